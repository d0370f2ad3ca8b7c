#include "support/files.hpp"

#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace ravelo::test {

TempFolder::TempFolder() {
    static std::mt19937_64 random{std::random_device{}()};
    for (int attempt = 0; attempt < 100; ++attempt) {
        path_ = std::filesystem::temp_directory_path() / ("ravelo-test-" + std::to_string(random() % 1000000000));
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
