// The parts of the host that Windows gives: the process environment, local
// time, and commands through "cmd /c".
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <chrono>
#include <cstdio>
#include <ctime>

#include "platform/host.hpp"
#include "platform/host_local.hpp"
#include "platform/win32/text.hpp"

namespace ravelo::platform {

void LocalTime(std::time_t seconds, std::tm& local) { localtime_s(&local, &seconds); }

Environment Environment::FromProcess(const DriveMap&) {
    std::vector<std::string> strings;
    wchar_t* block = GetEnvironmentStringsW();
    if (block == nullptr) return Environment();
    for (const wchar_t* entry = block; *entry != L'\0'; entry += wcslen(entry) + 1) {
        // Entries such as "=C:=C:\..." are the shell's own, not variables.
        if (entry[0] != L'=') strings.push_back(Narrow(entry));
    }
    FreeEnvironmentStringsW(block);
    return Environment(std::move(strings));
}

SystemShell::~SystemShell() {
    for (const auto& [id, handle] : started_) CloseHandle(reinterpret_cast<HANDLE>(handle));
}

long SystemShell::Start(const std::string& commandLine) {
    // The command line goes to cmd as it stands, as the classic Shell passes it.
    std::wstring command = L"cmd /c " + Wide(commandLine);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr,
                        &startup, &process)) {
        return 0;
    }
    CloseHandle(process.hThread);
    const long id = static_cast<long>(process.dwProcessId);
    started_.emplace(id, reinterpret_cast<std::intptr_t>(process.hProcess));
    return id;
}

void SystemShell::Wait(long processId) {
    const auto found = started_.find(processId);
    if (found == started_.end()) return;
    const HANDLE process = reinterpret_cast<HANDLE>(found->second);
    started_.erase(found);
    WaitForSingleObject(process, INFINITE);
    CloseHandle(process);
}

std::string ExecutablePath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD size = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (size == 0) return {};
        if (size < path.size()) return Narrow(std::wstring_view(path.data(), size));
        path.resize(path.size() * 2);
    }
}

void PrepareStandardStreams() {
    // A program of the GUI subsystem started from a console has no streams of
    // its own; one started with redirected streams has them already.
    const HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
    if ((out == nullptr || out == INVALID_HANDLE_VALUE) && AttachConsole(ATTACH_PARENT_PROCESS)) {
        std::freopen("CONOUT$", "w", stdout);
        std::freopen("CONOUT$", "w", stderr);
    }
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
}

std::string ProgramCommandLine(const DriveMap&, int argc, const char* const*, int first) {
    if (first >= argc) return {};
    // The program's name ends at the closing quote when quoted, else at the
    // first blank; the blanks after it go too.
    const std::wstring line = GetCommandLineW();
    std::size_t at = 0;
    if (!line.empty() && line[0] == L'"') {
        at = line.find(L'"', 1);
        at = at == std::wstring::npos ? line.size() : at + 1;
    } else {
        while (at < line.size() && line[at] != L' ' && line[at] != L'\t') ++at;
    }
    while (at < line.size() && (line[at] == L' ' || line[at] == L'\t')) ++at;
    return Narrow(std::wstring_view(line).substr(at));
}

}  // namespace ravelo::platform
