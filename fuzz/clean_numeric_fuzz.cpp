// The number cleaning and the coordinate reading that follows it on every
// atom line: the first line of the input is cleaned, the rest is the file
// that ReadCoordinates reads on into, for protein lines and for XCX lines.
#include <cstddef>
#include <cstdint>
#include <string>

#include "convert/filcvrt.hpp"
#include "runtime/error.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t cut = bytes.find('\n');
    std::string line = bytes.substr(0, cut);
    const std::string rest = cut == std::string::npos ? std::string() : bytes.substr(cut + 1);

    ravelo::FilCvrt::CleanNumericLine(line);
    for (const auto type : {ravelo::FilCvrt::SourceType::Labelled, ravelo::FilCvrt::SourceType::Xcx}) {
        ravelo::InputFile in(ravelo::MemorySource(rest));
        std::string current = line;
        double x = 0, y = 0, z = 0;
        try {
            ravelo::FilCvrt::ReadCoordinates(type, in, current, x, y, z);
        } catch (const ravelo::RuntimeError&) {
            // A number beyond the double range: error 6.
        }
    }
    return 0;
}
