#include "platform/win32/text.hpp"

#include <windows.h>

namespace ravelo::platform {

std::wstring Wide(std::string_view text, bool path) {
    if (text.empty()) return {};
    const int size = MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), wide.data(), size);
    if (path) {
        for (wchar_t& c : wide)
            if (c == L'/') c = L'\\';
    }
    return wide;
}

std::string Narrow(std::wstring_view text) {
    if (text.empty()) return {};
    const int size =
        WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), narrow.data(), size, nullptr, nullptr);
    return narrow;
}

std::string HostForm(std::string path) {
    for (char& c : path)
        if (c == '\\') c = '/';
    return path;
}

}  // namespace ravelo::platform
