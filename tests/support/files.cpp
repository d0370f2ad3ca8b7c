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

std::vector<std::vector<std::string>> TableRows(const std::filesystem::path& path) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream lines(ReadHostFile(path));
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::vector<std::string>& fields = rows.emplace_back(1);
        for (std::size_t i = 0; i < line.size(); ++i) {
            const char c = line[i], next = i + 1 < line.size() ? line[i + 1] : '\0';
            if (c == '\t') {
                fields.emplace_back();
            } else if (c == '\\' && next == 'x' && i + 3 < line.size()) {
                fields.back() += static_cast<char>(std::stoi(line.substr(i + 2, 2), nullptr, 16));
                i += 3;
            } else if (c == '\\' && (next == 't' || next == 'r' || next == 'n' || next == '\\')) {
                fields.back() += next == 't' ? '\t' : next == 'r' ? '\r' : next == 'n' ? '\n' : '\\';
                ++i;
            } else {
                fields.back() += c;
            }
        }
    }
    return rows;
}

}  // namespace ravelo::test
