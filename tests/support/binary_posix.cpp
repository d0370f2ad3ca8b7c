// Starting the built program on POSIX hosts.
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <stdexcept>

#include "support/test_program.hpp"

namespace ravelo::test {

ProcessId StartBinary(const std::vector<std::string>& args, const std::map<std::string, std::string>& env,
                  const std::filesystem::path& io, const std::filesystem::path& cwd) {
    std::vector<std::string> envStrings;
    for (const auto& [name, value] : ChildEnvironment(env)) envStrings.push_back(name + "=" + value);
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

ProcessResult WaitBinary(ProcessId pid, const std::filesystem::path& io) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    ProcessResult result;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    result.out = ReadHostFile(io / "out");
    result.err = ReadHostFile(io / "err");
    return result;
}

void KillBinary(ProcessId pid) { kill(static_cast<pid_t>(pid), SIGKILL); }

}  // namespace ravelo::test
