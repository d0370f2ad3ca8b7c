#include "support/files.hpp"

#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace ravelo::test {

TempFolder::TempFolder() {
    static std::mt19937_64 random{std::random_device{}()};
    // RAVELO_TEST_TEMP names another base folder: on Windows one off the drive
    // C: that the tests map to a folder of their own.
    const char* base = std::getenv("RAVELO_TEST_TEMP");
    const std::filesystem::path folder = base != nullptr && *base != '\0' ? base : std::filesystem::temp_directory_path();
    for (int attempt = 0; attempt < 100; ++attempt) {
        path_ = folder / ("ravelo-test-" + std::to_string(random() % 1000000000));
        if (std::filesystem::create_directory(path_)) return;
    }
    throw std::runtime_error("no temporary folder");
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string ReadHostFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return {};
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

void WriteHostFile(const std::filesystem::path& path, const std::string& bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

}  // namespace ravelo::test
