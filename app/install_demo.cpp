#include "install_demo.hpp"

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "platform/host.hpp"
#include "platform/host_files.hpp"
#include "platform/paths.hpp"
#include "shell/run.hpp"

namespace ravelo::app {
namespace {

namespace fs = std::filesystem;

// The demo's drive C: installed beside the program (PREFIX/share/raveloutils
// /demo beside PREFIX/bin; on Windows demo beside the program), else the
// source tree the program was built from.
fs::path DemoDriveC() {
    std::error_code error;
    const std::string exe = platform::ExecutablePath();
    if (!exe.empty()) {
        const fs::path folder = fs::path(exe).parent_path();
        for (const fs::path& installed : {folder.parent_path() / "share" / "raveloutils" / "demo" / "drive_c",
                                          folder / "demo" / "drive_c"}) {
            if (fs::is_directory(installed, error)) return installed;
        }
    }
#ifdef RAVELO_SOURCE_DEMO
    if (fs::is_directory(RAVELO_SOURCE_DEMO "/drive_c", error)) return RAVELO_SOURCE_DEMO "/drive_c";
#endif
    return {};
}

int Refuse(const std::string& text) {
    std::fprintf(stderr, "raveloutils: %s\n", text.c_str());
    return kExitUsage;
}

}  // namespace

int InstallDemo(const std::string& folder) {
    const fs::path demo = DemoDriveC();
    if (demo.empty()) return Refuse("the demo installation is not there (share/raveloutils/demo)");
    fs::path target = folder;
    if (target.empty()) {
        const auto driveC = platform::DriveMap::FromEnvironment().Root('C');
        if (!driveC) return Refuse("drive C is not mapped: set RAVELO_DRIVE_C or name a folder");
        target = *driveC;
    }
    target = fs::absolute(target).lexically_normal();
    if (!target.has_filename()) target = target.parent_path();
    std::error_code error;
    if (fs::exists(target, error) && !(fs::is_directory(target, error) && fs::is_empty(target, error))) {
        return Refuse(target.string() + " is not an empty folder: nothing was copied. Name an empty or new " +
                      "folder (raveloutils --install-demo FOLDER) and set RAVELO_DRIVE_C to it.");
    }
    // The copy is made beside the folder and renamed into place, so that a
    // failure or a kill leaves no half installation under its name.
    fs::create_directories(target.parent_path(), error);
    const fs::path staging =
        target.parent_path() / ("." + target.filename().string() + ".ravelo-install-" + std::to_string(platform::host::ProcessId()));
    fs::remove_all(staging, error);
    error.clear();
    fs::copy(demo, staging, fs::copy_options::recursive, error);
    if (!error) {
        // Files of a read-only source tree arrive read-only; drive C is the user's.
        std::error_code ignored;
        for (const auto& entry : fs::recursive_directory_iterator(staging, ignored))
            fs::permissions(entry.path(), fs::perms::owner_write, fs::perm_options::add, ignored);
        fs::permissions(staging, fs::perms::owner_all, fs::perm_options::add, ignored);
        // rename(2) also takes the place of an empty folder; Windows renames
        // nothing over a folder, so the empty one goes first there.
#ifdef _WIN32
        fs::remove(target, error);
        error.clear();
#endif
        fs::rename(staging, target, error);
    }
    if (error) {
        std::error_code ignored;
        fs::remove_all(staging, ignored);
        return Refuse("the demo installation could not be copied to " + target.string() + ": " + error.message());
    }
    std::printf("The demo installation is on drive C: %s\n", target.string().c_str());
    if (!folder.empty()) std::printf("Use it with RAVELO_DRIVE_C=%s\n", target.string().c_str());
    return kExitNormal;
}

}  // namespace ravelo::app
