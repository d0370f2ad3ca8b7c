#include "support/test_program.hpp"

#ifndef _WIN32
#include <unistd.h>   // environ
#endif

#include <cerrno>
#include <cstdio>
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

namespace ravelo::test {

TestProgram::TestProgram(const std::string& script, double waitScale, std::vector<std::string> environment) {
    std::filesystem::create_directories(DriveC());
    std::filesystem::create_directories(Temp());
    out_ = std::tmpfile();
    if (out_ == nullptr) throw std::runtime_error("no temporary file for the script host's output");

    // Z: is the root of the host drive that holds the test's folders.
    platform::DriveMap drives({{'C', DriveC().string()}, {'Z', Temp().root_path().generic_string()}});
    Services services;
    if (environment.empty()) environment = {"HOME=/root", "TEMP=" + drives.ToWindows(Temp().string())};
    services.environment = platform::Environment(std::move(environment));
    services.files = std::make_unique<platform::FileSystem>(std::move(drives));
    auto clock = std::make_unique<FakeClock>();
    clock_ = clock.get();
    services.clock = std::move(clock);
    services.ui = std::make_unique<ui::ScriptHost>(std::make_unique<std::istringstream>(script), out_);
    services.shell = std::make_unique<platform::SystemShell>();
    services.downloader = std::make_unique<platform::HostDownloader>(*services.files);
    services.waitScale = waitScale;
    program_ = std::make_unique<Program>(std::move(services));
    RegisterFeatures(*program_);
}

TestProgram::~TestProgram() {
    program_.reset();
    std::fclose(out_);
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
    const long size = std::ftell(out_);
    std::string text(static_cast<std::size_t>(size), '\0');
    std::rewind(out_);
    text.resize(std::fread(text.data(), 1, text.size(), out_));
    std::fseek(out_, 0, SEEK_END);
    return text;
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

std::map<std::string, std::string> ChildEnvironment(const std::map<std::string, std::string>& env) {
    // The test's own RAVELO_ settings (a fault switch, a window host) never
    // reach the program: each test sets what it needs.
    std::map<std::string, std::string> merged;
    for (char** e = environ; *e; ++e) {
        const std::string entry = *e;
        const auto eq = entry.find('=');
        if (eq != std::string::npos && eq > 0 && !entry.starts_with("RAVELO_"))
            merged[entry.substr(0, eq)] = entry.substr(eq + 1);
    }
    for (const auto& [name, value] : env) merged[name] = value;
    return merged;
}

ProcessResult RunBinary(const std::vector<std::string>& args, const std::map<std::string, std::string>& env,
                        const std::string& input, const std::filesystem::path& cwd) {
    TempFolder io;
    WriteHostFile(io.Path() / "in", input);
    return WaitBinary(StartBinary(args, env, io.Path(), cwd), io.Path());
}

}  // namespace ravelo::test
