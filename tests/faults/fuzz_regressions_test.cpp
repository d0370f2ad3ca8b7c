// Inputs that the fuzz targets once found to crash, kept so that the faults
// stay fixed: tests/data/fuzz-regressions/TARGET/ holds the inputs of each
// target. Reader inputs are converted through the real driver, the others go
// through the very function the target calls.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/test_program.hpp"

// The non-reader targets, each under a name of its own.
#define LLVMFuzzerTestOneInput FuzzSequential
#include "fuzz/sequential_fuzz.cpp"
#undef LLVMFuzzerTestOneInput
#define LLVMFuzzerTestOneInput FuzzCleanNumeric
#include "fuzz/clean_numeric_fuzz.cpp"
#undef LLVMFuzzerTestOneInput
#define LLVMFuzzerTestOneInput FuzzCalculx
#include "fuzz/calculx_fuzz.cpp"
#undef LLVMFuzzerTestOneInput

namespace ravelo::test {
namespace {

namespace fs = std::filesystem;

const fs::path kRegressions = fs::path(RAVELO_TEST_DATA) / "fuzz-regressions";

std::vector<fs::path> InputsOf(const std::string& target) {
    std::vector<fs::path> inputs;
    if (!fs::is_directory(kRegressions / target)) return inputs;
    for (const auto& entry : fs::directory_iterator(kRegressions / target)) {
        if (entry.is_regular_file()) inputs.push_back(entry.path());
    }
    return inputs;
}

TEST(FuzzRegressions, ReaderInputsEndInAConversionOrARunTimeError) {
    for (const auto& entry : fs::directory_iterator(kRegressions)) {
        const std::string target = entry.path().filename().string();
        if (target.rfind("fuzz_reader_", 0) != 0) continue;
        const std::string ext = target.substr(12);
        for (const fs::path& input : InputsOf(target)) {
            SCOPED_TRACE(input.string());
            TestProgram t;
            t.Install();
            t.Write("C:\\case\\in." + ext, ReadHostFile(input));
            const int status = t.Run("fileconv C:\\case\\in." + ext);
            EXPECT_TRUE(status == 0 || status == 3) << "exit status " << status;
        }
    }
}

TEST(FuzzRegressions, RoutineInputsRunToTheirEnd) {
    struct Target {
        const char* name;
        int (*run)(const std::uint8_t*, std::size_t);
    };
    for (const Target& target : {Target{"fuzz_sequential", FuzzSequential},
                                 Target{"fuzz_clean_numeric", FuzzCleanNumeric},
                                 Target{"fuzz_calculx", FuzzCalculx}}) {
        for (const fs::path& input : InputsOf(target.name)) {
            SCOPED_TRACE(input.string());
            const std::string bytes = ReadHostFile(input);
            EXPECT_EQ(target.run(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()), 0);
        }
    }
}

}  // namespace
}  // namespace ravelo::test
