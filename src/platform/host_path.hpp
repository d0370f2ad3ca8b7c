// Cutting and joining host paths ("/" separated, absolute: from "/" on POSIX,
// from a drive's root such as "C:/" on Windows), for the platform layer's
// own use.
#pragma once

#include <string>
#include <string_view>

namespace ravelo::platform {

// The folder of a host path; the root ("/", "C:/") for a name in the root.
inline std::string Parent(const std::string& hostPath) {
    const auto slash = hostPath.rfind('/');
    if (slash == std::string::npos || slash == 0) return "/";
    if (slash == 2 && hostPath[1] == ':') return hostPath.substr(0, 3);
    return hostPath.substr(0, slash);
}

// The last component of a host path.
inline std::string BaseName(const std::string& hostPath) {
    const auto slash = hostPath.rfind('/');
    return slash == std::string::npos ? hostPath : hostPath.substr(slash + 1);
}

inline std::string Child(const std::string& folder, std::string_view name) {
    std::string out = folder;
    if (out.empty() || out.back() != '/') out += '/';
    out += name;
    return out;
}

}  // namespace ravelo::platform
