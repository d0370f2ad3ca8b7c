// The floor of the whole-process benchmark: what a converter cannot avoid.
// It reads the file line by line, takes the first three items of each line
// that hold a "." and start with a number (std::from_chars), and writes one
// record per line that has three: x,y,z,"X",serial with CR LF. No cleaning,
// no element symbols, no rewriting of the input.
//
// usage: bench_floor INPUT OUTPUT
#include <charconv>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <system_error>

namespace {

// Up to three numbers from the items of `line` that hold a point.
int ThreeNumbers(std::string_view line, double (&xyz)[3]) {
    int found = 0;
    std::size_t at = 0;
    while (found < 3 && at < line.size()) {
        while (at < line.size() && (line[at] == ' ' || line[at] == '\t')) ++at;
        const std::size_t start = at;
        while (at < line.size() && line[at] != ' ' && line[at] != '\t') ++at;
        const std::string_view item = line.substr(start, at - start);
        if (item.find('.') == std::string_view::npos) continue;
        double value = 0;
        const auto result = std::from_chars(item.data(), item.data() + item.size(), value);
        if (result.ec == std::errc()) xyz[found++] = value;
    }
    return found;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: bench_floor INPUT OUTPUT\n", stderr);
        return 2;
    }
    std::FILE* in = std::fopen(argv[1], "rb");
    std::FILE* out = std::fopen(argv[2], "wb");
    if (in == nullptr || out == nullptr) {
        std::perror("bench_floor");
        return 1;
    }
    static char inBuffer[1 << 16];
    static char outBuffer[1 << 16];
    std::setvbuf(in, inBuffer, _IOFBF, sizeof inBuffer);
    std::setvbuf(out, outBuffer, _IOFBF, sizeof outBuffer);

    char line[4096];
    long serial = 0;
    while (std::fgets(line, sizeof line, in) != nullptr) {
        std::size_t length = std::strlen(line);
        while (length > 0 && (line[length - 1] == '\n' || line[length - 1] == '\r')) --length;
        double xyz[3];
        if (ThreeNumbers(std::string_view(line, length), xyz) < 3) continue;
        char record[128];
        char* end = record + sizeof record;
        char* at = record;
        for (const double v : xyz) {
            at = std::to_chars(at, end, v).ptr;
            *at++ = ',';
        }
        std::memcpy(at, "\"X\",", 4);
        at += 4;
        at = std::to_chars(at, end, ++serial).ptr;
        *at++ = '\r';
        *at++ = '\n';
        std::fwrite(record, 1, static_cast<std::size_t>(at - record), out);
    }
    std::fclose(in);
    return std::fclose(out) == 0 ? 0 : 1;
}
