// A fresh program for a test: a temporary drive C, a temporary TEMP folder,
// a fake clock, the real shell, and the script host with the test's script.
#pragma once

#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/program.hpp"
#include "support/files.hpp"

namespace ravelo::test {

// A clock that stands still until a waiting loop idles; then it moves on
// 10 ms a turn.
class FakeClock final : public platform::Clock {
public:
    std::uint32_t Millis() override { return millis; }
    double Timer() override { return 43200 + millis / 1000.0; }
    platform::Date Today() override { return {2026, 11, 22}; }
    void Idle() override { millis += 10; }
    std::uint32_t millis = 0;
};

class TestProgram {
public:
    // `script`: the script host's commands, one a line. `environment`: the
    // environment strings (default: HOME and a TEMP naming Temp()).
    explicit TestProgram(const std::string& script = {}, double waitScale = 1,
                         std::vector<std::string> environment = {});
    ~TestProgram();

    Program& program() { return *program_; }
    FakeClock& clock() { return *clock_; }
    // Host folders of drive C and of TEMP.
    std::filesystem::path DriveC() const { return root_.Path() / "drive_c"; }
    std::filesystem::path Temp() const { return root_.Path() / "temp"; }

    // The installation that start-up looks for: the drive file naming C:,
    // the modeller's executable, and the database folder.
    void Install();
    // Host path of a Windows-form path on drive C ("C:\\x\\y").
    std::filesystem::path Host(const std::string& winPath) const;
    void Write(const std::string& winPath, const std::string& bytes) const;
    std::string Read(const std::string& winPath) const;
    bool Exists(const std::string& winPath) const;

    // Runs the program with a command line; returns the exit status.
    int Run(const std::string& commandLine, const std::string& window = {});
    // What the script host printed so far.
    std::string Output();

private:
    TempFolder root_;
    std::FILE* out_ = nullptr;
    FakeClock* clock_ = nullptr;
    std::unique_ptr<Program> program_;
};

struct ProcessResult {
    int status = -1;
    std::string out;
    std::string err;
};
// Starts the built program with `args` and `env` added to the test's
// environment (less its RAVELO_ settings), in `cwd`; the standard streams
// are the files io/in (empty when missing), io/out and io/err.
// A started program: its process id.
using ProcessId = long;
// The environment a started program gets: the test's own (less its RAVELO_
// settings) with `env` added.
std::map<std::string, std::string> ChildEnvironment(const std::map<std::string, std::string>& env);
ProcessId StartBinary(const std::vector<std::string>& args, const std::map<std::string, std::string>& env,
                  const std::filesystem::path& io, const std::filesystem::path& cwd = {});
// Waits for a program StartBinary started; a signal's end is 128 + its number.
ProcessResult WaitBinary(ProcessId pid, const std::filesystem::path& io);
// Ends a started program at once, as a kill by the user would (SIGKILL, or
// TerminateProcess on Windows).
void KillBinary(ProcessId pid);
ProcessResult RunBinary(const std::vector<std::string>& args, const std::map<std::string, std::string>& env,
                        const std::string& input = {}, const std::filesystem::path& cwd = {});

// Today's date as the program writes it (MM-DD-YYYY), for @TODAY@ in recorded files.
std::string TodayText();
// `text` with every @TODAY@ replaced by TodayText().
std::string Dated(std::string text);

}  // namespace ravelo::test
