// The parts of the host that POSIX calls give: the process environment,
// local time, and commands through /bin/sh.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "platform/host.hpp"
#include "platform/host_local.hpp"

extern char** environ;   // the process environment, in its order

namespace ravelo::platform {

void LocalTime(std::time_t seconds, std::tm& local) { localtime_r(&seconds, &local); }

Environment Environment::FromProcess(const DriveMap& drives) {
    std::vector<std::string> strings;
    bool haveTemp = false;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        std::string text = *entry;
        if (text.starts_with("TEMP=")) {
            const std::string value = text.substr(5);
            // An empty TEMP names no folder; it is treated as missing.
            if (value.empty()) continue;
            haveTemp = true;
            if (value[0] == '/') text = "TEMP=" + drives.ToWindows(value);
        }
        strings.push_back(std::move(text));
    }
    if (!haveTemp) {
        const char* tmpdir = std::getenv("TMPDIR");
        const std::string folder = tmpdir != nullptr && tmpdir[0] == '/' ? tmpdir : "/tmp";
        strings.push_back("TEMP=" + drives.ToWindows(folder));
    }
    return Environment(std::move(strings));
}

// ---- SystemShell -----------------------------------------------------------

SystemShell::~SystemShell() {
    for (const auto& [pid, unused] : started_) {
        int status = 0;
        waitpid(static_cast<pid_t>(pid), &status, WNOHANG);
    }
}

long SystemShell::Start(const std::string& commandLine) {
    posix_spawn_file_actions_t actions;
    if (posix_spawn_file_actions_init(&actions) != 0) return 0;
    // The command reads nothing from us; and no descriptor of ours other than
    // standard output and error reaches it, whoever opened it.
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
#if defined(__GLIBC__) && (__GLIBC__ > 2 || (__GLIBC__ == 2 && __GLIBC_MINOR__ >= 34))
    posix_spawn_file_actions_addclosefrom_np(&actions, 3);
#endif
    // posix_spawn takes a mutable argument array but never changes it.
    char sh[] = "sh";
    char dashC[] = "-c";
    std::string command = commandLine;
    char* const argv[] = {sh, dashC, command.data(), nullptr};
    pid_t pid = 0;
    const int failed = posix_spawn(&pid, "/bin/sh", &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failed != 0 || pid <= 0) return 0;
    started_.emplace(pid, 0);
    return pid;
}

void SystemShell::Wait(long processId) {
    // Only our own children: waitpid on 0 or -1 would wait for any child.
    if (started_.erase(processId) == 0) return;
    int status = 0;
    while (waitpid(static_cast<pid_t>(processId), &status, 0) < 0 && errno == EINTR) {
    }
}

std::string ExecutablePath() {
    std::error_code error;
    const std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : exe.string();
}

void PrepareStandardStreams() {}

std::string ProgramCommandLine(const DriveMap& drives, int argc, const char* const* argv, int first) {
    return JoinCommandLine(drives, argc, argv, first);
}

}  // namespace ravelo::platform
