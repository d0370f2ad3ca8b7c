// The rest of the host: the environment strings, the clock, and the shell.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/paths.hpp"

namespace ravelo::platform {

// The environment strings ("NAME=value") in their order, as the program
// scans them. On POSIX a TEMP holding a host path is presented in Windows
// form, and a missing TEMP is added from TMPDIR, else /tmp.
class Environment {
public:
    static Environment FromProcess(const DriveMap& drives);
    explicit Environment(std::vector<std::string> strings = {});

    // The i-th string from 1; empty past the last.
    std::string At(std::size_t i) const;
    // The value of a variable (exact name), empty when unset.
    std::string Get(std::string_view name) const;
    const std::vector<std::string>& Strings() const { return strings_; }

private:
    std::vector<std::string> strings_;
};

struct Date {
    int year = 0, month = 0, day = 0;
};

class Clock {
public:
    virtual ~Clock() = default;
    // A millisecond counter (wraps at 2^32, as the classic timer does).
    virtual std::uint32_t Millis() = 0;
    // Seconds since midnight, with fractions.
    virtual double Timer() = 0;
    virtual Date Today() = 0;
    // Called by a waiting loop that has nothing to do (the real clock yields
    // the processor for a moment; a fake clock advances).
    virtual void Idle() = 0;
};

class SystemClock final : public Clock {
public:
    std::uint32_t Millis() override;
    double Timer() override;
    Date Today() override;
    void Idle() override;
};

// Starts command lines through the host shell (/bin/sh -c, cmd /c on
// Windows) and waits for them.
class Shell {
public:
    virtual ~Shell() = default;
    // Starts the command; returns a process id, or 0 when it could not start.
    virtual long Start(const std::string& commandLine) = 0;
    // Waits until the process has ended; returns at once if it is unknown.
    virtual void Wait(long processId) = 0;
};

class SystemShell final : public Shell {
public:
    SystemShell() = default;
    SystemShell(const SystemShell&) = delete;
    SystemShell& operator=(const SystemShell&) = delete;
    // Collects the processes that have ended and were never waited for.
    ~SystemShell() override;

    long Start(const std::string& commandLine) override;
    void Wait(long processId) override;

private:
    // Processes started and not yet waited for: id -> the host's handle (on
    // Windows; 0 elsewhere).
    std::map<long, std::intptr_t> started_;
};

// The full host path of the running program's executable ("" when unknown).
std::string ExecutablePath();

// Readies standard input, output and error for the program's bytes: binary
// on every host; on Windows a program without a console of its own writes
// to the console that started it, if any.
void PrepareStandardStreams();

// The command line the program reads, from the arguments after `first`: on
// POSIX the arguments joined (JoinCommandLine); on Windows the raw text the
// process was started with, after the program's name, as the classic
// program read it (nothing when `first` is past the last argument).
std::string ProgramCommandLine(const DriveMap& drives, int argc, const char* const* argv, int first);

// The timed-pause multiplier from RAVELO_WAIT_SCALE (default 1; a text that
// is not a number, or a negative one, counts as 1).
double WaitScaleFromEnvironment();

}  // namespace ravelo::platform
