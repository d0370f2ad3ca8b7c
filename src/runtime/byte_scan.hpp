// Searches of a byte range for the bytes that end a run, eight bytes at a
// time: a byte equal to the sought one gives a zero byte after an xor, and
// the borrow of a subtraction finds a zero byte (or one below a bound) in a
// whole word. The passes over every byte of a large file (line reading, the
// rebuilding of line ends) use these instead of a test per byte.
#pragma once

#include <cstdint>
#include <cstring>

namespace ravelo {

namespace byte_scan {

constexpr std::uint64_t kOnes = 0x0101010101010101u;
constexpr std::uint64_t kHighs = 0x8080808080808080u;

inline std::uint64_t Load(const char* at) {
    std::uint64_t word;
    std::memcpy(&word, at, sizeof word);
    return word;
}
// True when some byte of `word` is below `bound` (at most 128).
inline bool HasBelow(std::uint64_t word, unsigned bound) {
    return ((word - kOnes * bound) & ~word & kHighs) != 0;
}
inline bool HasByte(std::uint64_t word, unsigned char byte) { return HasBelow(word ^ (kOnes * byte), 1); }
// The high bit of every byte of `word` that equals `byte`, and no other bit
// (no borrow runs between bytes, so the marks can be combined by place).
inline std::uint64_t ByteMarks(std::uint64_t word, unsigned char byte) {
    constexpr std::uint64_t kLows = ~kHighs;
    const std::uint64_t v = word ^ (kOnes * byte);
    return ~(((v & kLows) + kLows) | v | kLows);
}

}  // namespace byte_scan

// The first CR or LF in [at, stop), or stop.
inline const char* FindLineEnd(const char* at, const char* stop) {
    using namespace byte_scan;
    while (stop - at >= 8) {
        const std::uint64_t word = Load(at);
        if (HasByte(word, '\r') || HasByte(word, '\n')) break;
        at += 8;
    }
    while (at != stop && *at != '\r' && *at != '\n') ++at;
    return at;
}

// The first byte in [at, stop) that is not a printable ASCII character (32
// to 126), or stop.
inline const char* FindUnprintable(const char* at, const char* stop) {
    using namespace byte_scan;
    while (stop - at >= 8) {
        const std::uint64_t word = Load(at);
        if (HasBelow(word, 32) || (word & kHighs) != 0 || HasByte(word, 127)) break;
        at += 8;
    }
    while (at != stop && static_cast<unsigned char>(*at) - 32u <= 94u) ++at;
    return at;
}

}  // namespace ravelo
