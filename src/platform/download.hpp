// Fetching one file from an internet address into a local file.
#pragma once

#include <string>

#include "platform/filesystem.hpp"

namespace ravelo::platform {

class Downloader {
public:
    virtual ~Downloader() = default;
    // Copies the resource at `address` into the file at `target` (a
    // Windows-form path), replacing it. The target is replaced only by a
    // complete download: a failure (no network, an unknown host, a refused
    // connection, an HTTP error, a target that cannot be written) leaves it
    // as it was. Returns whether the download succeeded.
    virtual bool DownloadToFile(const std::string& address, const std::string& target) = 0;
};

// Downloads with the host's library (libcurl on POSIX, WinHTTP on Windows):
// redirects followed, HTTP errors count as failures.
class HostDownloader final : public Downloader {
public:
    explicit HostDownloader(FileSystem& files);
    bool DownloadToFile(const std::string& address, const std::string& target) override;

private:
    FileSystem& files_;
};

}  // namespace ravelo::platform
