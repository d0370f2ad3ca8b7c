// Host files and folders for tests of any layer: a throw-away folder, and
// reading and writing a file's bytes.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ravelo::test {

// A folder under the system's temporary folder (or $RAVELO_TEST_TEMP),
// removed with its contents.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

// Bytes of a host file ("" when missing).
std::string ReadHostFile(const std::filesystem::path& path);
void WriteHostFile(const std::filesystem::path& path, const std::string& bytes);

// The rows of a table of cases (tab-separated fields; blank lines and lines
// starting with "#" left out). In a field "\xHH" is that byte, "\t", "\r",
// "\n" and "\\" the character; any other backslash stands as it is.
std::vector<std::vector<std::string>> TableRows(const std::filesystem::path& path);

}  // namespace ravelo::test
