// Cutting and joining host paths ("/" separated, absolute), for the platform
// layer's own use.
#pragma once

#include <string>
#include <string_view>

namespace ravelo::platform {

// The folder of a host path; "/" for a name in the root.
inline std::string Parent(const std::string& hostPath) {
    const auto slash = hostPath.rfind('/');
    if (slash == std::string::npos || slash == 0) return "/";
    return hostPath.substr(0, slash);
}

// The last component of a host path.
inline std::string BaseName(const std::string& hostPath) {
    const auto slash = hostPath.rfind('/');
    return slash == std::string::npos ? hostPath : hostPath.substr(slash + 1);
}

inline std::string Child(const std::string& folder, std::string_view name) {
    std::string out = folder == "/" ? std::string() : folder;
    out += '/';
    out += name;
    return out;
}

}  // namespace ravelo::platform
