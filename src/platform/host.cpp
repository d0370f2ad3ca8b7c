// The environment strings, the system clock and the host shell.
#include "platform/host.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <thread>

extern char** environ;   // the process environment, in its order

namespace ravelo::platform {
namespace {

bool StartsWith(std::string_view s, std::string_view prefix) { return s.substr(0, prefix.size()) == prefix; }

// Local time now, with the fraction of the current second.
std::pair<std::tm, double> LocalNow() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto fraction = now - std::chrono::system_clock::from_time_t(seconds);
    std::tm local{};
    localtime_r(&seconds, &local);
    return {local, std::chrono::duration<double>(fraction).count()};
}

}  // namespace

// ---- Environment -----------------------------------------------------------

Environment Environment::FromProcess(const DriveMap& drives) {
    std::vector<std::string> strings;
    bool haveTemp = false;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        std::string text = *entry;
        if (StartsWith(text, "TEMP=")) {
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

Environment::Environment(std::vector<std::string> strings) : strings_(std::move(strings)) {}

std::string Environment::At(std::size_t i) const {
    if (i == 0 || i > strings_.size()) return {};
    return strings_[i - 1];
}

std::string Environment::Get(std::string_view name) const {
    for (const auto& text : strings_) {
        if (text.size() > name.size() && text[name.size()] == '=' && StartsWith(text, name)) {
            return text.substr(name.size() + 1);
        }
    }
    return {};
}

// ---- SystemClock -----------------------------------------------------------

std::uint32_t SystemClock::Millis() {
    const auto since = std::chrono::steady_clock::now().time_since_epoch();
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(since).count();
    return static_cast<std::uint32_t>(ms);   // deliberately wraps at 2^32
}

double SystemClock::Timer() {
    const auto [local, fraction] = LocalNow();
    return local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec + fraction;
}

Date SystemClock::Today() {
    const std::tm local = LocalNow().first;
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
}

void SystemClock::Idle() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }

// ---- SystemShell -----------------------------------------------------------

SystemShell::~SystemShell() {
    for (const long pid : started_) {
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
    started_.insert(pid);
    return pid;
}

void SystemShell::Wait(long processId) {
    // Only our own children: waitpid on 0 or -1 would wait for any child.
    if (started_.erase(processId) == 0) return;
    int status = 0;
    while (waitpid(static_cast<pid_t>(processId), &status, 0) < 0 && errno == EINTR) {
    }
}

// ---- Wait scale --------------------------------------------------------------

double WaitScaleFromEnvironment() {
    const char* text = std::getenv("RAVELO_WAIT_SCALE");
    if (text == nullptr) return 1;
    std::string_view value = text;
    while (!value.empty() && value.front() == ' ') value.remove_prefix(1);
    while (!value.empty() && value.back() == ' ') value.remove_suffix(1);
    double scale = 1;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), scale);
    if (value.empty() || error != std::errc() || end != value.data() + value.size() || !std::isfinite(scale) ||
        scale < 0) {
        return 1;
    }
    return scale == 0 ? 0.0 : scale;   // "-0" is 0
}

}  // namespace ravelo::platform
