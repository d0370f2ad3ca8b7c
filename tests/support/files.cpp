#include "support/files.hpp"

#include <stdlib.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace ravelo::test {

TempFolder::TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ravelo-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
    path_ = pattern;
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
