#include "support/test_program.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "shell/features.hpp"
#include "platform/host.hpp"
#include "shell/run.hpp"
#include "ui/script_host.hpp"
#include "ui/host.hpp"
#include "platform/download.hpp"

extern char** environ;

namespace ravelo::test {

TestProgram::TestProgram(const std::string& script, double waitScale, std::vector<std::string> environment) {
    std::filesystem::create_directories(DriveC());
    std::filesystem::create_directories(Temp());
    out_ = open_memstream(&outBuffer_, &outSize_);

    platform::DriveMap drives({{'C', DriveC().string()}, {'Z', "/"}});
    Services services;
    if (environment.empty()) environment = {"HOME=/root", "TEMP=" + drives.ToWindows(Temp().string())};
    services.environment = platform::Environment(std::move(environment));
    services.files = std::make_unique<platform::FileSystem>(std::move(drives));
    auto clock = std::make_unique<FakeClock>();
    clock_ = clock.get();
    services.clock = std::move(clock);
    services.ui = std::make_unique<ui::ScriptHost>(std::make_unique<std::istringstream>(script), out_);
    services.shell = std::make_unique<platform::SystemShell>();
    services.downloader = std::make_unique<platform::CurlDownloader>(*services.files);
    services.waitScale = waitScale;
    program_ = std::make_unique<Program>(std::move(services));
    RegisterFeatures(*program_);
}

TestProgram::~TestProgram() {
    program_.reset();
    std::fclose(out_);
    std::free(outBuffer_);
}

void TestProgram::Install() {
    Write("C:\\programdata\\ravelo\\ravelodrive.dat", "\"Kalmodyn\",\"2026\",\"C:\"\r\n");
    Write("C:\\ravelo\\Kalmodyn.Exe", "stand-in for the modeller executable\r\n");
    std::filesystem::create_directories(DriveC() / "dmor");
}

std::filesystem::path TestProgram::Host(const std::string& winPath) const {
    std::string rest = winPath.substr(winPath.rfind(':') + 1);
    for (char& c : rest)
        if (c == '\\') c = '/';
    return DriveC() / rest.substr(rest.find_first_not_of('/'));
}

void TestProgram::Write(const std::string& winPath, const std::string& bytes) const {
    WriteHostFile(Host(winPath), bytes);
}

std::string TestProgram::Read(const std::string& winPath) const { return ReadHostFile(Host(winPath)); }

bool TestProgram::Exists(const std::string& winPath) const { return std::filesystem::exists(Host(winPath)); }

int TestProgram::Run(const std::string& commandLine, const std::string& window) {
    return RunProgram(*program_, commandLine, window);
}

std::string TestProgram::Output() {
    std::fflush(out_);
    return std::string(outBuffer_, outSize_);
}

std::string TodayText() {
    const platform::Date today = platform::SystemClock().Today();
    char text[16];
    std::snprintf(text, sizeof text, "%02d-%02d-%04d", today.month, today.day, today.year);
    return text;
}

std::string Dated(std::string text) {
    for (std::size_t at; (at = text.find("@TODAY@")) != std::string::npos;) text.replace(at, 7, TodayText());
    return text;
}

pid_t StartBinary(const std::vector<std::string>& args, const std::map<std::string, std::string>& env,
                  const std::filesystem::path& io, const std::filesystem::path& cwd) {
    // The test's own RAVELO_ settings (a fault switch, a window host) never
    // reach the program: each test sets what it needs.
    std::map<std::string, std::string> merged;
    for (char** e = environ; *e; ++e) {
        const std::string entry = *e;
        const auto eq = entry.find('=');
        if (eq != std::string::npos && !entry.starts_with("RAVELO_")) merged[entry.substr(0, eq)] = entry.substr(eq + 1);
    }
    for (const auto& [name, value] : env) merged[name] = value;
    std::vector<std::string> envStrings;
    for (const auto& [name, value] : merged) envStrings.push_back(name + "=" + value);
    std::vector<char*> envp;
    for (auto& s : envStrings) envp.push_back(s.data());
    envp.push_back(nullptr);

    std::vector<std::string> argStrings{RAVELO_BINARY_PATH};
    argStrings.insert(argStrings.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (auto& s : argStrings) argv.push_back(s.data());
    argv.push_back(nullptr);

    if (!std::filesystem::exists(io / "in")) WriteHostFile(io / "in", "");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, (io / "in").c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, (io / "out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, 2, (io / "err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    // The child starts in the working folder.
    pid_t pid = 0;
    const std::filesystem::path previous = std::filesystem::current_path();
    if (!cwd.empty()) std::filesystem::current_path(cwd);
    const int spawned = posix_spawn(&pid, RAVELO_BINARY_PATH, &actions, nullptr, argv.data(), envp.data());
    std::filesystem::current_path(previous);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) throw std::runtime_error("cannot start raveloutils");
    return pid;
}

ProcessResult WaitBinary(pid_t pid, const std::filesystem::path& io) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    ProcessResult result;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    result.out = ReadHostFile(io / "out");
    result.err = ReadHostFile(io / "err");
    return result;
}

ProcessResult RunBinary(const std::vector<std::string>& args, const std::map<std::string, std::string>& env,
                        const std::string& input, const std::filesystem::path& cwd) {
    TempFolder io;
    WriteHostFile(io.Path() / "in", input);
    return WaitBinary(StartBinary(args, env, io.Path(), cwd), io.Path());
}

}  // namespace ravelo::test
