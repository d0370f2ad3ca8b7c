// Windows-form paths (C:\ravelo\molecule.log) and the host paths they stand
// for. Inside the program every path is Windows-form text; only this layer
// turns one into a host path.
//
//   Z:            the host root "/"
//   C:            $RAVELO_DRIVE_C, default $XDG_DATA_HOME/ravelo/drive_c
//                 (~/.local/share/ravelo/drive_c)
//   L:            $RAVELO_DRIVE_L for any other letter
//   \x\y          on the current directory's drive
//   x\y           relative to the current directory
//   /x/y          a host path as it stands (typed by a user)
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravelo::platform {

class DriveMap {
public:
    // Drive letters from the process environment (RAVELO_DRIVE_<L>, defaults).
    static DriveMap FromEnvironment();
    // An explicit map (tests): letter (upper case) -> host folder.
    explicit DriveMap(std::map<char, std::string> roots = {});

    void Set(char letter, std::string hostFolder);
    // Host folder of a drive letter (any case), if the drive is mapped.
    std::optional<std::string> Root(char letter) const;
    // Every mapped letter, sorted ("C", "Z", ...).
    std::string Letters() const;

    // The host path that a Windows-form path names, without any lookup
    // (components keep their case). `currentDir` is the Windows-form current
    // directory used for relative paths. An unmapped drive raises 76.
    std::string ToHost(std::string_view winPath, std::string_view currentDir) const;
    // The Windows form of an absolute host path: the mapped drive whose
    // folder holds it (longest match, drive Z last), else Z:.
    std::string ToWindows(std::string_view hostPath) const;

    // Where a Windows-form path leads, before any lookup: its drive letter
    // (upper case; 0 for a host path), the drive's host folder ("/" for a
    // host path), and the components below that folder with "." and ".."
    // resolved. ToHost is root and components joined; the file services look
    // the components up case-insensitively from the root. An unmapped drive
    // raises 76.
    struct Location {
        char drive = 0;
        std::string root;
        std::vector<std::string> components;
    };
    Location Locate(std::string_view winPath, std::string_view currentDir) const;

private:
    std::map<char, std::string> roots_;
};

// The host forms of the command-line arguments joined into one command line:
// an argument that starts with "/" becomes the path of the mapped drive whose
// host folder holds it (the longest such folder wins; /home/u/drive_c/x.pdb
// is C:\x.pdb when drive C is /home/u/drive_c), else Z: and the path, with
// "\" for "/"; a relative argument that holds "/" and whose folder exists has
// its "/" turned into "\"; anything else (words, URLs, counts) passes
// unchanged.
// A host path as the host writes it for a person: as it stands on POSIX,
// with "\" on Windows.
std::string NativeForm(std::string hostPath);

std::string JoinCommandLine(const DriveMap& drives, int argc, const char* const* argv, int first = 1);

}  // namespace ravelo::platform
