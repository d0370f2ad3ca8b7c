// Downloads through libcurl, written through the file service's crash-safe
// replacement so that only a complete download reaches the target.
#include "platform/download.hpp"

#include <curl/curl.h>

#include <memory>
#include <mutex>

#include "runtime/error.hpp"

namespace ravelo::platform {
namespace {

void InitialiseCurlOnce() {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

// Hands each received piece to the replacement file; a write failure stops
// the transfer.
std::size_t WritePiece(char* data, std::size_t size, std::size_t count, void* user) {
    auto* file = static_cast<OutputFile*>(user);
    try {
        file->Print(std::string_view(data, size * count));
    } catch (const RuntimeError&) {
        return 0;
    }
    return size * count;
}

struct CurlDeleter {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};

}  // namespace

HostDownloader::HostDownloader(FileSystem& files) : files_(files) {}

bool HostDownloader::DownloadToFile(const std::string& address, const std::string& target) {
    if (address.empty() || target.empty()) return false;
    InitialiseCurlOnce();
    std::unique_ptr<CURL, CurlDeleter> curl(curl_easy_init());
    if (!curl) return false;
    try {
        Replacement replacement = files_.OpenReplacement(target);
        CURL* handle = curl.get();
        curl_easy_setopt(handle, CURLOPT_URL, address.c_str());
        curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
        curl_easy_setopt(handle, CURLOPT_MAXREDIRS, 10L);
        curl_easy_setopt(handle, CURLOPT_FAILONERROR, 1L);
        curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT, 30L);
        // A stalled transfer (under 1 byte/s for a minute) is a failure.
        curl_easy_setopt(handle, CURLOPT_LOW_SPEED_LIMIT, 1L);
        curl_easy_setopt(handle, CURLOPT_LOW_SPEED_TIME, 60L);
        curl_easy_setopt(handle, CURLOPT_USERAGENT, "RaveloUtils");
        curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, WritePiece);
        curl_easy_setopt(handle, CURLOPT_WRITEDATA, &replacement.File());
        if (curl_easy_perform(handle) != CURLE_OK) return false;   // the replacement is dropped
        replacement.Commit();
        return true;
    } catch (const RuntimeError&) {
        // A target that cannot be created or replaced: nothing is written.
        return false;
    }
}

}  // namespace ravelo::platform
