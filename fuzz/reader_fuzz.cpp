// One reader through the real conversion driver: the input bytes become a
// file of the type RAVELO_FUZZ_EXT on drive C, and "fileconv" converts it.
// A run-time error (exit status 3) is an outcome like any other; a crash, a
// sanitizer report or a hang is a fault.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "fuzz/fuzz_program.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    namespace fs = std::filesystem;
    const fs::path folder = ravelo::fuzz::Root() / "drive_c" / "case";
    fs::remove_all(folder);
    fs::create_directories(folder);
    std::ofstream(folder / ("in." RAVELO_FUZZ_EXT), std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));

    const auto program = ravelo::fuzz::MakeProgram();
    const int status = ravelo::RunProgram(*program, "fileconv C:\\case\\in." RAVELO_FUZZ_EXT);
    if (status != ravelo::kExitNormal && status != ravelo::kExitRuntimeError) __builtin_trap();
    return 0;
}
