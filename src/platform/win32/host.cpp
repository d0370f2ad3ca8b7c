// The parts of the host that Windows gives: the process environment, local
// time, and commands through "cmd /c".
#include <windows.h>

#include <chrono>
#include <ctime>

#include "platform/host.hpp"
#include "platform/host_local.hpp"
#include "platform/win32/text.hpp"

namespace ravelo::platform {

std::pair<std::tm, double> LocalNow() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto fraction = now - std::chrono::system_clock::from_time_t(seconds);
    std::tm local{};
    localtime_s(&local, &seconds);
    return {local, std::chrono::duration<double>(fraction).count()};
}

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

}  // namespace ravelo::platform
