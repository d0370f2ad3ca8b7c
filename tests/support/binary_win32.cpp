// Starting the built program on Windows hosts (and under wine).
#include <windows.h>

#include <map>
#include <mutex>
#include <stdexcept>
#include <string>

#include "platform/win32/text.hpp"
#include "support/test_program.hpp"

namespace ravelo::test {
namespace {

// A file the child inherits as one of its standard streams.
HANDLE Inheritable(const std::filesystem::path& path, bool write) {
    SECURITY_ATTRIBUTES inherit{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    return CreateFileW(path.wstring().c_str(), write ? GENERIC_WRITE : GENERIC_READ,
                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inherit,
                       write ? CREATE_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

// An argument as it goes into the command line, which the program reads
// raw: as it stands, in quotes only when it holds a blank and no quote of
// its own (one that does was quoted by the test as a user would).
std::wstring Quoted(const std::wstring& arg) {
    if (arg.find_first_of(L" \t") == std::wstring::npos || arg.find(L'"') != std::wstring::npos) return arg;
    return L"\"" + arg + L"\"";
}

// The handles of started programs until they are waited for.
std::mutex startedMutex;
std::map<ProcessId, HANDLE> started;

}  // namespace

ProcessId StartBinary(const std::vector<std::string>& args, const std::map<std::string, std::string>& env,
                      const std::filesystem::path& io, const std::filesystem::path& cwd) {
    std::wstring block;   // NAME=value\0...\0
    for (const auto& [name, value] : ChildEnvironment(env)) block += platform::Wide(name + "=" + value) + L'\0';
    block += L'\0';
    std::wstring line = Quoted(std::filesystem::path(RAVELO_BINARY_PATH).wstring());
    for (const std::string& arg : args) line += L" " + Quoted(platform::Wide(arg));

    if (!std::filesystem::exists(io / "in")) WriteHostFile(io / "in", "");
    PROCESS_INFORMATION process{};
    const std::wstring folder = cwd.empty() ? std::wstring() : cwd.wstring();
    // Under wine a program that has just ended may hold its streams or its
    // executable for a moment longer: a refused start is tried again.
    DWORD error = 0;
    for (int attempt = 0; attempt < 50; ++attempt) {
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = Inheritable(io / "in", false);
        startup.hStdOutput = Inheritable(io / "out", true);
        startup.hStdError = Inheritable(io / "err", true);
        const bool streams = startup.hStdInput != INVALID_HANDLE_VALUE && startup.hStdOutput != INVALID_HANDLE_VALUE &&
                             startup.hStdError != INVALID_HANDLE_VALUE;
        const BOOL launched =
            streams && CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_UNICODE_ENVIRONMENT,
                                      block.data(), folder.empty() ? nullptr : folder.c_str(), &startup, &process);
        error = GetLastError();
        for (const HANDLE stream : {startup.hStdInput, startup.hStdOutput, startup.hStdError})
            if (stream != INVALID_HANDLE_VALUE) CloseHandle(stream);
        if (launched) break;
        process = {};
        Sleep(50);
    }
    if (process.hProcess == nullptr) throw std::runtime_error("cannot start raveloutils (error " + std::to_string(error) + ")");
    CloseHandle(process.hThread);
    const auto id = static_cast<ProcessId>(process.dwProcessId);
    const std::lock_guard<std::mutex> lock(startedMutex);
    started[id] = process.hProcess;
    return id;
}

ProcessResult WaitBinary(ProcessId pid, const std::filesystem::path& io) {
    ProcessResult result;
    HANDLE process = nullptr;
    {
        const std::lock_guard<std::mutex> lock(startedMutex);
        if (const auto found = started.find(pid); found != started.end()) {
            process = found->second;
            started.erase(found);
        }
    }
    DWORD code = 0;
    if (process != nullptr) {
        WaitForSingleObject(process, INFINITE);
        GetExitCodeProcess(process, &code);
        CloseHandle(process);
    }
    result.status = static_cast<int>(code);
    result.out = ReadHostFile(io / "out");
    result.err = ReadHostFile(io / "err");
    return result;
}

void KillBinary(ProcessId pid) {
    const std::lock_guard<std::mutex> lock(startedMutex);
    // Exit code 137 = 128 + SIGKILL, as the POSIX wait reports a kill.
    if (const auto found = started.find(pid); found != started.end()) TerminateProcess(found->second, 137);
}

}  // namespace ravelo::test
