// The host shell: commands run, are waited for, and get nothing of ours.
#include "platform/host.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "support/files.hpp"

namespace ravelo::platform {
namespace {

struct ShellTest : ::testing::Test {
    std::string Path(const char* name) const { return (dir_.Path() / name).string(); }
    std::string Read(const char* name) const { return test::ReadHostFile(dir_.Path() / name); }
    test::TempFolder dir_;
};

TEST_F(ShellTest, WaitsForItsOwnCommandsOnly) {
    SystemShell shell, other;
    const long pid = shell.Start("sleep 0.5; printf 'a b' > '" + Path("out.txt") + "'");
    ASSERT_GT(pid, 0);
    other.Wait(pid);   // not its command: returns at once
    other.Wait(0);     // waitpid(0) would wait for any child
    EXPECT_EQ(Read("out.txt"), "");
    shell.Wait(pid);
    EXPECT_EQ(Read("out.txt"), "a b");
    // Collected, so no zombie is left.
    EXPECT_EQ(waitpid(static_cast<pid_t>(pid), nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(ShellTest, TheCommandGetsNoInputAndNoDescriptorsOfOurs) {
    const int leaked = open(Path(".").c_str(), O_RDONLY);   // deliberately without close-on-exec
    // Our own input is a pipe meanwhile, so only a redirection gives the command /dev/null.
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    const int savedInput = dup(0);
    dup2(pipeEnds[0], 0);
    SystemShell shell;
    const long pid = shell.Start("readlink /proc/self/fd/0 > '" + Path("in.txt") + "'; if [ -e /proc/self/fd/" +
                                 std::to_string(leaked) + " ]; then echo open; else echo closed; fi > '" +
                                 Path("fd.txt") + "'");
    dup2(savedInput, 0);
    for (const int fd : {savedInput, pipeEnds[0], pipeEnds[1], leaked}) close(fd);
    shell.Wait(pid);
    EXPECT_EQ(Read("in.txt"), "/dev/null\n");
    EXPECT_EQ(Read("fd.txt"), "closed\n");
}

}  // namespace
}  // namespace ravelo::platform
