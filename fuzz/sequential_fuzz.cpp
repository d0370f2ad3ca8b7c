// The sequential reader: lines, characters and items of every kind, in an
// order the input's first bytes choose, over the rest of the input.
#include <cstddef>
#include <cstdint>
#include <string>

#include "runtime/error.hpp"
#include "runtime/sequential.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    const std::size_t plan = data[0] % 8 + 1;   // how many choice bytes follow
    if (size < plan + 1) return 0;
    ravelo::InputFile in(ravelo::MemorySource(std::string(reinterpret_cast<const char*>(data) + 1 + plan,
                                                           size - 1 - plan)));
    try {
        for (std::size_t step = 0; !in.Eof(); ++step) {
            switch (data[1 + step % plan] % 7) {
                case 0: in.LineInput(); break;
                case 1: in.GetChar(); break;
                case 2: in.InputText(); break;
                case 3: in.InputNumber(); break;
                case 4: in.InputLong(); break;
                case 5: in.InputInteger(); break;
                case 6: in.ReadChunk(); break;
            }
        }
        in.LineInput();   // past the end: 62
    } catch (const ravelo::RuntimeError&) {
        // 62 at the end, 6 for a number out of range: the reader's own errors.
    }
    return 0;
}
