// Drive letters to host folders and back, the drives and TEMP taken from the
// environment, the wait scale, and the POSIX command line in Windows form.
#include "platform/paths.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <tuple>

#include "platform/host.hpp"
#include "runtime/error.hpp"
#include "support/error_of.hpp"
#include "support/files.hpp"

extern char** environ;

namespace ravelo::platform {
namespace {

namespace fs = std::filesystem;

// Sets (or, with nullopt, removes) an environment variable for one scope.
struct ScopedEnv {
    ScopedEnv(std::string name, const std::optional<std::string>& value) : name_(std::move(name)) {
        if (const char* old = std::getenv(name_.c_str())) old_ = old;
        Put(value);
    }
    ~ScopedEnv() { Put(old_); }
    void Put(const std::optional<std::string>& v) { v ? setenv(name_.c_str(), v->c_str(), 1) : unsetenv(name_.c_str()); }
    std::string name_;
    std::optional<std::string> old_;
};

const DriveMap kDrives({{'C', "/data/drive_c"}, {'D', "/mnt/d/"}, {'Z', "/"}});

TEST(DriveMapToHost, DrivesCurrentDirectoriesDotsAndHostPaths) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        // Drive letters in any case; the trailing "/" of a setting is not doubled.
        {"C:\\ravelo\\x.dat", "Z:\\", "/data/drive_c/ravelo/x.dat"}, {"d:\\a", "Z:\\", "/mnt/d/a"},
        {"Z:\\etc\\hosts", "C:\\", "/etc/hosts"}, {"C:\\", "Z:\\", "/data/drive_c"},
        // Relative and rooted paths follow the current directory.
        {"x\\y.cif", "C:\\work", "/data/drive_c/work/x/y.cif"}, {"\\x", "d:\\work", "/mnt/d/x"},
        {"\\x\\y.cif", "C:\\work", "/data/drive_c/x/y.cif"}, {"y.cif", "Z:\\home\\u", "/home/u/y.cif"},
        {"C:y.cif", "C:\\work", "/data/drive_c/work/y.cif"}, {"D:y.cif", "C:\\work", "/mnt/d/y.cif"},
        // Dots resolve without leaving the drive.
        {"..\\b\\.\\c.txt", "C:\\work\\a", "/data/drive_c/work/b/c.txt"},
        {"C:\\..\\..\\x", "Z:\\", "/data/drive_c/x"}, {"C:\\a\\\\b\\", "Z:\\", "/data/drive_c/a/b"},
        // Host paths stand as typed; a "\name" the program's own rules append still separates.
        {"/home/u/x.cif", "C:\\work", "/home/u/x.cif"}, {"/home/u\\x.sxs", "C:\\work", "/home/u/x.sxs"},
        {"x.sxs", "/home/u", "/home/u/x.sxs"},
    };
    for (const auto& [path, current, host] : cases) EXPECT_EQ(kDrives.ToHost(path, current), host) << path;
    // An unmapped drive is 76.
    EXPECT_EQ(test::ErrorOf([] { kDrives.ToHost("Q:\\x", "C:\\"); }), kPathNotFound);
    EXPECT_EQ(test::ErrorOf([] { kDrives.ToHost("x", "Q:\\work"); }), kPathNotFound);
    EXPECT_EQ(test::ErrorOf([] { DriveMap({{'C', "/c"}}).ToHost("\\x", "Z:\\"); }), kPathNotFound);
}

TEST(DriveMapToWindows, TheDeepestDriveHoldingThePathWinsAndZComesLast) {
    const DriveMap nested({{'C', "/data/c"}, {'E', "/data/c/inner"}, {'Z', "/"}});
    // "/data/c" does not hold "/data/cat".
    const std::pair<const char*, const char*> cases[] = {{"/data/c/x/y.dat", "C:\\x\\y.dat"},
        {"/data/c/inner/y.dat", "E:\\y.dat"}, {"/data/c", "C:\\"}, {"/data/cat/", "Z:\\data\\cat"}, {"/", "Z:\\"}};
    for (const auto& [host, windows] : cases) EXPECT_EQ(nested.ToWindows(host), windows) << host;
    EXPECT_EQ(DriveMap({{'C', "/c"}}).ToWindows("/tmp/x"), "Z:\\tmp\\x");
}

TEST(DriveMapFromEnvironment, DefaultsAndOverrides) {
    ScopedEnv driveC("RAVELO_DRIVE_C", std::nullopt);
    ScopedEnv driveZ("RAVELO_DRIVE_Z", std::nullopt);
    ScopedEnv driveQ("RAVELO_DRIVE_Q", "/srv/q/");
    ScopedEnv home("HOME", "/home/tester");
    {
        ScopedEnv xdg("XDG_DATA_HOME", "/xdg/data");
        const DriveMap map = DriveMap::FromEnvironment();
        EXPECT_EQ(map.Root('C'), "/xdg/data/ravelo/drive_c");
        EXPECT_EQ(map.Root('z'), "/");
        EXPECT_EQ(map.Root('Q'), "/srv/q");
    }
    ScopedEnv xdg("XDG_DATA_HOME", std::nullopt);
    EXPECT_EQ(DriveMap::FromEnvironment().Root('C'), "/home/tester/.local/share/ravelo/drive_c");
    ScopedEnv overrideZ("RAVELO_DRIVE_Z", "/srv/z");
    ScopedEnv overrideC("RAVELO_DRIVE_C", "/srv/c");
    EXPECT_EQ(DriveMap::FromEnvironment().Root('Z'), "/srv/z");
    EXPECT_EQ(DriveMap::FromEnvironment().Root('C'), "/srv/c");
}

const DriveMap kTempDrives({{'C', "/var/lib/rv/c"}, {'Z', "/"}});

TEST(Environment, AHostTempIsShownInWindowsFormAndAMissingOneComesLast) {
    for (const auto& [host, windows] : std::vector<std::pair<std::string, std::string>>{
             {"/var/lib/rv/c/Temp/", "C:\\Temp"}, {"/scratch/t", "Z:\\scratch\\t"}, {"D:\\Temp", "D:\\Temp"}}) {
        ScopedEnv temp("TEMP", host);
        EXPECT_EQ(Environment::FromProcess(kTempDrives).Get("TEMP"), windows);
    }
    ScopedEnv temp("TEMP", std::nullopt);
    {
        ScopedEnv tmpdir("TMPDIR", "/scratch/t");
        const Environment env = Environment::FromProcess(kTempDrives);
        EXPECT_EQ(env.At(env.Strings().size()), "TEMP=Z:\\scratch\\t");
    }
    ScopedEnv tmpdir("TMPDIR", std::nullopt);
    const Environment env = Environment::FromProcess(kTempDrives);
    EXPECT_EQ(env.Strings().back(), "TEMP=Z:\\tmp");
    EXPECT_EQ(env.At(env.Strings().size() + 1), "");
    EXPECT_EQ(env.At(0), "");
    // Every other string keeps its place.
    std::size_t i = 0;
    for (char** entry = environ; *entry != nullptr; ++entry) EXPECT_EQ(env.At(++i), *entry);
    EXPECT_EQ(i + 1, env.Strings().size());
}

TEST(WaitScale, NumbersCountAndAnythingElseIsOne) {
    const std::pair<std::optional<std::string>, double> cases[] = {{std::nullopt, 1}, {"0", 0}, {"0.25", 0.25},
        {" 3 ", 3}, {"2e1", 20}, {"-1", 1}, {"abc", 1}, {"2x", 1}, {"", 1}, {"nan", 1}};
    for (const auto& [text, expected] : cases) {
        ScopedEnv scale("RAVELO_WAIT_SCALE", text);
        EXPECT_EQ(WaitScaleFromEnvironment(), expected) << text.value_or("(unset)");
    }
}

TEST(JoinCommandLine, HostPathsBecomeWindowsFormAndOtherWordsPass) {
    const test::TempFolder scratchFolder;
    const fs::path& scratch = scratchFolder.Path();
    fs::create_directories(scratch / "sub");
    const fs::path before = fs::current_path();
    fs::current_path(scratch);   // relative folders are looked up from here

    // A host path in a mapped drive's folder takes the deepest such drive; the folder's points stay out.
    const std::string c = (scratch / ".local" / "drive_c").string();
    const DriveMap drives({{'C', c}, {'D', c + "/deep"}});
    const std::string inC = c + "/data/x.pdb", inD = c + "/deep/y.pdb", folder = c + "/data/";
    const char* argv[] = {"raveloutils", "fileconv", "/home/u/x.cif", "sub/y.cif", "nosub/y.cif",
                          "http://host/p", "3", "a\\b", inC.c_str(), inD.c_str(), folder.c_str()};
    const std::string line = JoinCommandLine(drives, 8, argv);
    const std::string fromThird = JoinCommandLine(drives, 4, argv, 2);
    const std::string mapped = JoinCommandLine(drives, 11, argv, 8);

    fs::current_path(before);
    EXPECT_EQ(line, "fileconv Z:\\home\\u\\x.cif sub\\y.cif nosub/y.cif http://host/p 3 a\\b");
    EXPECT_EQ(fromThird, "Z:\\home\\u\\x.cif sub\\y.cif");
    EXPECT_EQ(mapped, "C:\\data\\x.pdb D:\\y.pdb C:\\data\\");
    EXPECT_EQ(JoinCommandLine(drives, 1, argv), "");
}

}  // namespace
}  // namespace ravelo::platform
