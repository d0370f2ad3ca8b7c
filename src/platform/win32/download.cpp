// Downloads through WinHTTP, written through the file service's crash-safe
// replacement so that only a complete download reaches the target.
#include "platform/download.hpp"

#include <windows.h>
#include <winhttp.h>

#include <memory>
#include <vector>

#include "platform/win32/text.hpp"
#include "runtime/error.hpp"

namespace ravelo::platform {
namespace {

struct InternetCloser {
    void operator()(void* handle) const { WinHttpCloseHandle(handle); }
};
using Internet = std::unique_ptr<void, InternetCloser>;

constexpr int kTimeoutMs = 60000;

}  // namespace

HostDownloader::HostDownloader(FileSystem& files) : files_(files) {}

bool HostDownloader::DownloadToFile(const std::string& address, const std::string& target) {
    if (address.empty() || target.empty()) return false;
    const std::wstring url = Wide(address);
    URL_COMPONENTS parts{};
    parts.dwStructSize = sizeof parts;
    parts.dwHostNameLength = static_cast<DWORD>(-1);
    parts.dwUrlPathLength = static_cast<DWORD>(-1);
    parts.dwExtraInfoLength = static_cast<DWORD>(-1);
    if (!WinHttpCrackUrl(url.c_str(), 0, 0, &parts)) return false;
    const std::wstring hostName(parts.lpszHostName, parts.dwHostNameLength);
    std::wstring path(parts.lpszUrlPath, parts.dwUrlPathLength);
    path.append(parts.lpszExtraInfo, parts.dwExtraInfoLength);
    if (path.empty()) path = L"/";

    const Internet session(WinHttpOpen(L"RaveloUtils", WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY, WINHTTP_NO_PROXY_NAME,
                                       WINHTTP_NO_PROXY_BYPASS, 0));
    if (!session) return false;
    WinHttpSetTimeouts(session.get(), kTimeoutMs, kTimeoutMs, kTimeoutMs, kTimeoutMs);
    const Internet connection(WinHttpConnect(session.get(), hostName.c_str(), parts.nPort, 0));
    if (!connection) return false;
    const DWORD secure = parts.nScheme == INTERNET_SCHEME_HTTPS ? WINHTTP_FLAG_SECURE : 0;
    const Internet request(WinHttpOpenRequest(connection.get(), L"GET", path.c_str(), nullptr, WINHTTP_NO_REFERER,
                                              WINHTTP_DEFAULT_ACCEPT_TYPES, secure));
    if (!request) return false;
    // Redirects are followed by default; an HTTP error is a failure.
    if (!WinHttpSendRequest(request.get(), WINHTTP_NO_ADDITIONAL_HEADERS, 0, WINHTTP_NO_REQUEST_DATA, 0, 0, 0) ||
        !WinHttpReceiveResponse(request.get(), nullptr)) {
        return false;
    }
    DWORD status = 0, size = sizeof status;
    if (!WinHttpQueryHeaders(request.get(), WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                             WINHTTP_HEADER_NAME_BY_INDEX, &status, &size, WINHTTP_NO_HEADER_INDEX) ||
        status >= 400) {
        return false;
    }
    try {
        Replacement replacement = files_.OpenReplacement(target);
        std::vector<char> buffer(1 << 16);
        for (;;) {
            DWORD got = 0;
            if (!WinHttpReadData(request.get(), buffer.data(), static_cast<DWORD>(buffer.size()), &got)) return false;
            if (got == 0) break;
            replacement.File().Print(std::string_view(buffer.data(), got));
        }
        replacement.Commit();
        return true;
    } catch (const RuntimeError&) {
        // A target that cannot be created or replaced: nothing is written.
        return false;
    }
}

}  // namespace ravelo::platform
