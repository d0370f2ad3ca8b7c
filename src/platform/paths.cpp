// Drive letters to host folders and back, and the translation of a POSIX
// command line into the Windows-form one that the program reads.
#include "platform/paths.hpp"

#include <cerrno>
#include <cstdlib>

#include "platform/host_files.hpp"
#include "runtime/error.hpp"

namespace ravelo::platform {
namespace {

bool IsSeparator(char c) { return c == '\\' || c == '/'; }
// A path that starts with "/" is a host path typed as it stands on POSIX; on
// Windows it is a path from the current drive's root.
#ifdef _WIN32
constexpr bool kHostPathsFromSlash = false;
#else
constexpr bool kHostPathsFromSlash = true;
#endif
bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
char Upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }
// "C:..." (any case).
bool HasDrive(std::string_view path) { return path.size() >= 2 && IsLetter(path[0]) && path[1] == ':'; }

std::string WorkingDirectory() { return host::WorkingFolder(); }

std::string Getenv(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

// Walks `text` component by component onto `parts`. Both "\" and "/" separate
// components, also inside a host path: the program's own path rules append
// "\name" to whatever folder text they hold, a typed host path included.
// Empty components and "." vanish; ".." drops one, never climbing above the
// root.
void ApplyComponents(std::vector<std::string>& parts, std::string_view text) {
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = start;
        while (end < text.size() && !IsSeparator(text[end])) ++end;
        const std::string_view part = text.substr(start, end - start);
        if (part == "..") {
            if (!parts.empty()) parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parts.emplace_back(part);
        }
        start = end + 1;
    }
}

// The root that an absolute host path starts from: "/", or a drive's root
// ("C:/") on Windows; empty for a relative path.
std::string_view HostRoot(std::string_view hostPath) {
    if (!hostPath.empty() && hostPath[0] == '/') return hostPath.substr(0, 1);
#ifdef _WIN32
    if (HasDrive(hostPath) && (hostPath.size() == 2 || IsSeparator(hostPath[2]))) return hostPath.substr(0, 3);
#endif
    return {};
}

std::string JoinHost(std::string_view root, const std::vector<std::string>& parts) {
    std::string out(root);
    if (out.size() == 2) out += '/';   // "C:" is the drive's root "C:/"
    for (const auto& part : parts) {
        if (!out.empty() && out.back() != '/') out += '/';
        out += part;
    }
    return out.empty() ? std::string("/") : out;
}

// The components of a host path, absolute from the working directory; a
// drive ("C:") is the first of them on Windows.
std::vector<std::string> AbsoluteComponents(std::string_view hostPath) {
    std::vector<std::string> parts;
    if (HostRoot(hostPath).empty()) ApplyComponents(parts, WorkingDirectory());
    ApplyComponents(parts, hostPath);
    return parts;
}


[[maybe_unused]] std::string HomeDirectory() {
    std::string home = Getenv("HOME");
    return home.empty() ? host::HomeFolder() : home;
}

// A drive's folder as an absolute, normalised host path without a trailing
// "/"; a relative setting counts from the working directory.
std::string NormalFolder(std::string_view folder) {
    std::vector<std::string> parts = AbsoluteComponents(folder);
#ifdef _WIN32
    // The drive comes first: "C:" and the rest below its root.
    if (!parts.empty() && HasDrive(parts[0])) {
        const std::string drive = parts[0];
        parts.erase(parts.begin());
        return JoinHost(drive, parts);
    }
#endif
    return JoinHost("/", parts);
}

// The drive and components of a current directory; it must be absolute.
DriveMap::Location ParseCurrent(std::string_view currentDir) {
    DriveMap::Location loc;
    if (!currentDir.empty() && currentDir[0] == '/') {
        ApplyComponents(loc.components, currentDir);
    } else if (HasDrive(currentDir)) {
        loc.drive = Upper(currentDir[0]);
        ApplyComponents(loc.components, currentDir.substr(2));
    } else {
        Raise(kPathNotFound);
    }
    return loc;
}

}  // namespace

DriveMap DriveMap::FromEnvironment() {
    DriveMap map;
#ifdef _WIN32
    // Drives are the host's own.
    for (const char letter : host::DriveLetters()) map.Set(letter, std::string{letter, ':', '/'});
#else
    std::string dataHome = Getenv("XDG_DATA_HOME");
    // An empty or relative XDG_DATA_HOME is invalid and so ignored.
    if (dataHome.empty() || dataHome[0] != '/') dataHome = HomeDirectory() + "/.local/share";
    map.Set('C', dataHome + "/ravelo/drive_c");
    map.Set('Z', "/");
#endif
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        const std::string name = std::string("RAVELO_DRIVE_") + letter;
        if (const char* value = std::getenv(name.c_str()); value != nullptr && *value != '\0') {
            map.Set(letter, value);
        }
    }
    return map;
}

DriveMap::DriveMap(std::map<char, std::string> roots) {
    for (auto& [letter, folder] : roots) Set(letter, std::move(folder));
}

void DriveMap::Set(char letter, std::string hostFolder) {
    if (!IsLetter(letter)) return;
    if (hostFolder.empty()) {
        roots_.erase(Upper(letter));
    } else {
        roots_[Upper(letter)] = NormalFolder(hostFolder);
    }
}

std::optional<std::string> DriveMap::Root(char letter) const {
    const auto it = roots_.find(Upper(letter));
    if (it == roots_.end()) return std::nullopt;
    return it->second;
}

std::string DriveMap::Letters() const {
    std::string letters;
    for (const auto& entry : roots_) letters += entry.first;
    return letters;
}

DriveMap::Location DriveMap::Locate(std::string_view winPath, std::string_view currentDir) const {
    Location loc;
    if (!winPath.empty() && winPath[0] == '/' && !HostRoot(winPath).empty() && kHostPathsFromSlash) {
        ApplyComponents(loc.components, winPath);
    } else if (HasDrive(winPath)) {
        const std::string_view rest = winPath.substr(2);
        loc.drive = Upper(winPath[0]);
        // "C:name" continues the current directory when it is on drive C;
        // there is one current directory, not one per drive.
        if (rest.empty() || !IsSeparator(rest[0])) {
            Location base = ParseCurrent(currentDir);
            if (base.drive == loc.drive) loc.components = std::move(base.components);
        }
        ApplyComponents(loc.components, rest);
    } else if (!winPath.empty() && IsSeparator(winPath[0])) {
        loc.drive = ParseCurrent(currentDir).drive;
        ApplyComponents(loc.components, winPath);
    } else {
        loc = ParseCurrent(currentDir);
        ApplyComponents(loc.components, winPath);
    }
    if (loc.drive == 0) {
        loc.root = "/";
    } else {
        const auto root = Root(loc.drive);
        if (!root) Raise(kPathNotFound);
        loc.root = *root;
    }
    return loc;
}

std::string DriveMap::ToHost(std::string_view winPath, std::string_view currentDir) const {
    const Location loc = Locate(winPath, currentDir);
    return JoinHost(loc.root, loc.components);
}

std::string DriveMap::ToWindows(std::string_view hostPath) const {
    const std::vector<std::string> parts = AbsoluteComponents(hostPath);

    // The number of leading components that a drive's folder takes, when the
    // folder holds the path.
    const auto depthIn = [&parts](const std::string& root) -> std::optional<std::size_t> {
        std::vector<std::string> rootParts;
        ApplyComponents(rootParts, root);
        if (rootParts.size() > parts.size()) return std::nullopt;
        for (std::size_t i = 0; i < rootParts.size(); ++i) {
            if (rootParts[i] != parts[i]) return std::nullopt;
        }
        return rootParts.size();
    };

    char best = 0;
    std::size_t bestDepth = 0;
    for (const auto& [letter, root] : roots_) {
        if (letter == 'Z') continue;
        const auto depth = depthIn(root);
        if (depth && (best == 0 || *depth > bestDepth)) {
            best = letter;
            bestDepth = *depth;
        }
    }
    if (best == 0) {
        best = 'Z';
        const auto z = Root('Z');
        const auto depth = z ? depthIn(*z) : std::nullopt;
        bestDepth = depth ? *depth : 0;
    }

    std::string out{best, ':'};
    if (bestDepth == parts.size()) return out + '\\';
    for (std::size_t i = bestDepth; i < parts.size(); ++i) {
        out += '\\';
        out += parts[i];
    }
    return out;
}

std::string NativeForm(std::string hostPath) {
#ifdef _WIN32
    for (char& c : hostPath)
        if (c == '/') c = '\\';
#endif
    return hostPath;
}

std::string JoinCommandLine(const DriveMap& drives, int argc, const char* const* argv, int first) {
    std::string line;
    for (int i = first; i < argc; ++i) {
        std::string arg = argv[i] == nullptr ? std::string() : std::string(argv[i]);
        bool slashesToBackslashes = false;
        if (!arg.empty() && arg[0] == '/') {
            // On a drive's own terms, so that the drive's host folder (which
            // may hold points, as ~/.local does) is no part of the path the
            // program cuts and renames.
            const bool folder = arg.back() == '/';
            arg = drives.ToWindows(arg);
            if (folder && arg.back() != '\\') arg += '\\';
        } else if (const auto slash = arg.rfind('/'); slash != std::string::npos) {
            // Only a path whose folder is really there: "http://x/y" has the
            // folder "http:", which is not, so a URL passes unchanged.
            host::Status st;
            slashesToBackslashes = host::GetStatus(arg.substr(0, slash), st) && st.kind == host::Kind::Folder;
        }
        if (slashesToBackslashes) {
            for (char& c : arg) {
                if (c == '/') c = '\\';
            }
        }
        if (i > first) line += ' ';
        line += arg;
    }
    return line;
}

}  // namespace ravelo::platform
