// The file services on a scratch drive C: case-insensitive lookup, directory
// searches, the error numbers of host refusals, sequential files, and
// crash-safe replacement.
#include "platform/filesystem.hpp"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>  // the tests' own view of the disk, independent of the code under test
#include <functional>

#include "runtime/error.hpp"
#include "support/error_of.hpp"
#include "support/files.hpp"

namespace ravelo::platform {
namespace {

namespace fs = std::filesystem;
using test::ErrorOf;
using Names = std::vector<std::string>;

class FileSystemTest : public ::testing::Test {
protected:
    FileSystemTest() : files_(DriveMap({{'C', C().string()}, {'Z', "/"}})) { fs::create_directories(C()); }

    // Host files under drive C, written and read by the test itself.
    void Put(const std::string& rel, const std::string& bytes) { test::WriteHostFile(C() / rel, bytes); }
    std::string Get(const std::string& rel) { return test::ReadHostFile(C() / rel); }
    // The names really on disk in a folder of drive C, sorted.
    Names OnDisk(const std::string& rel) {
        Names names;
        for (const auto& entry : fs::directory_iterator(C() / rel)) names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
    // The error number of each call, in order.
    std::vector<int> Errors(const std::vector<std::function<void(FileSystem&)>>& calls) {
        std::vector<int> numbers;
        for (const auto& call : calls) numbers.push_back(ErrorOf([&] { call(files_); }));
        return numbers;
    }
    fs::path C() const { return root_.Path() / "c"; }
    FileSystem& Files() { return files_; }

    test::TempFolder root_;
    FileSystem files_;
};

TEST_F(FileSystemTest, FindsNamesInAnyCaseAndNewNamesKeepTheCaseGiven) {
    Put("Data/Sub/Molecule.LOG", "12345");
    Put("Data/Sub/molecule.log", "1");
    EXPECT_TRUE(Files().Exists("C:\\DATA\\sub\\molecule.log"));
    EXPECT_TRUE(Files().DirExists("c:\\data\\SUB"));
    EXPECT_FALSE(Files().Exists("C:\\data\\sub"));   // a folder is no file
    // The exact name first; else, of the names differing only in case, the first in byte order.
    EXPECT_EQ(Files().FileLen("C:\\data\\SUB\\molecule.log"), 1);
    EXPECT_EQ(Files().FileLen("C:\\data\\SUB\\MOLECULE.log"), 5);
    EXPECT_EQ(Files().HostPath("C:\\DATA\\sub\\MOLECULE.LOG"), (C() / "Data/Sub/Molecule.LOG").string());
    fs::permissions(C() / "Data/Sub/molecule.log", fs::perms::owner_read);   // read-only even to the super-user
    EXPECT_TRUE(Files().ReadOnly("C:\\DATA\\sub\\molecule.log"));
    EXPECT_FALSE(Files().ReadOnly("C:\\DATA\\sub\\MOLECULE.LOG"));

    Files().OpenOutput("C:\\DATA\\New.Txt").Close();
    Files().MkDirs("C:\\data\\Fresh\\Deeper");
    EXPECT_EQ(OnDisk(""), Names{"Data"});
    EXPECT_EQ(OnDisk("Data"), (Names{"Fresh", "New.Txt", "Sub"}));
    EXPECT_TRUE(fs::is_directory(C() / "Data/Fresh/Deeper"));

    // Relative and rooted paths follow the current directory.
    Files().ChDir("c:\\data");
    EXPECT_EQ(Files().CurDir(), "C:\\data");
    EXPECT_TRUE(Files().Exists("sub\\MOLECULE.LOG"));
    EXPECT_TRUE(Files().Exists("\\DATA\\Sub\\molecule.log"));
    EXPECT_EQ(ErrorOf([&] { Files().ChDir("C:\\nowhere"); }), kPathNotFound);
    EXPECT_EQ(Files().CurDir(), "C:\\data");
}

TEST_F(FileSystemTest, ALargeFolderKeepsUpWithChangesByThisProgramAndOthers) {
    // A folder large enough for its listing to be kept between lookups.
    for (int i = 0; i < 300; ++i) Put("Lib/entry_" + std::to_string(i) + ".cif", "");
    EXPECT_FALSE(Files().Exists("C:\\LIB\\Piece.XXS"));   // the listing is taken
    Files().OpenOutput("C:\\Lib\\Piece.xxs").Close();
    EXPECT_EQ(Files().HostPath("C:\\LIB\\PIECE.XXS"), (C() / "Lib/Piece.xxs").string());
    Files().Name("C:\\Lib\\Piece.xxs", "C:\\Lib\\Moved.xxs");
    EXPECT_FALSE(Files().Exists("C:\\LIB\\PIECE.XXS"));
    EXPECT_TRUE(Files().Exists("C:\\LIB\\MOVED.XXS"));
    Files().ReplaceFile("C:\\Lib\\Fresh.xxs", "x");
    EXPECT_TRUE(Files().Exists("C:\\lib\\FRESH.XXS"));
    Files().Kill("C:\\lib\\moved.xxs");
    EXPECT_FALSE(Files().Exists("C:\\LIB\\Moved.XXS"));
    EXPECT_EQ(OnDisk("Lib").size(), 301u);   // no temporary file left
    // Another program's changes; the pauses give a host with coarse folder times a change of its own.
    usleep(20000);
    Put("Lib/Other.cif", "");
    EXPECT_TRUE(Files().Exists("C:\\LIB\\OTHER.CIF"));
    usleep(20000);
    fs::remove(C() / "Lib/Other.cif");
    EXPECT_FALSE(Files().Exists("C:\\LIB\\OTHER.CIF"));
}

TEST_F(FileSystemTest, SearchesMatchInAnyCaseAndNamesComeInByteOrder) {
    for (const char* name : {"b.cif", "A.CIF", "ab.cif", "C.cif", "a.txt", "README"}) Put(std::string("d/") + name, "");
    fs::create_directories(C() / "d/e.cif");  // folders are not listed
    const std::pair<const char*, Names> cases[] = {
        // Upper case sorts before lower case.
        {"C:\\d\\*.CIF", {"A.CIF", "C.cif", "ab.cif", "b.cif"}}, {"C:\\D\\?.cIf", {"A.CIF", "C.cif", "b.cif"}},
        {"c:\\d\\A*", {"A.CIF", "a.txt", "ab.cif"}},
        // "*.*" names a file without an extension too, as on Windows.
        {"C:\\d\\*.*", {"A.CIF", "C.cif", "README", "a.txt", "ab.cif", "b.cif"}},
        {"C:\\d\\a.cif", {"A.CIF"}},  // a plain name as it is on disk
        {"C:\\d\\zz.cif", {}}, {"C:\\d\\e.cif", {}}, {"C:\\nowhere\\*.cif", {}},
    };
    for (const auto& [pattern, names] : cases) EXPECT_EQ(Files().Dir(pattern), names) << pattern;
    EXPECT_EQ(Files().SubDirs("C:\\D"), Names{"e.cif"});
    EXPECT_EQ(Files().SubDirs("C:\\nowhere"), Names{});
}

TEST_F(FileSystemTest, MissingFilesAre53MissingFoldersAre76AndRefusalsOfTheHostAre75) {
    Put("d/a.txt", "a");
    Put("d/b.txt", "b");
    fs::create_directories(C() / "d/folder");
    const std::string nul("C:\\d\\a\0b.txt", 12);
    EXPECT_EQ(Errors({[](auto& f) { f.FileLen("C:\\d\\none.txt"); }, [](auto& f) { f.Kill("C:\\d\\none.txt"); },
                      [](auto& f) { f.Kill("C:\\d\\*.none"); },
                      [](auto& f) { f.FileCopy("C:\\d\\none.txt", "C:\\d\\x.txt"); },
                      [](auto& f) { f.Name("C:\\d\\none.txt", "C:\\d\\x.txt"); },
                      [](auto& f) { f.OpenInput("C:\\d\\none.txt"); }}),
              std::vector<int>(6, kFileNotFound));
    EXPECT_EQ(Errors({[](auto& f) { f.FileLen("C:\\nowhere\\none.txt"); },
                      [](auto& f) { f.OpenOutput("C:\\nowhere\\x.txt"); }, [](auto& f) { f.MkDir("C:\\nowhere\\x"); },
                      [](auto& f) { f.OpenInput("Q:\\x.txt"); }}),   // drive Q is not mapped
              std::vector<int>(4, kPathNotFound));
    EXPECT_FALSE(Files().Exists("Q:\\x.txt"));  // ... and holds no file
    EXPECT_EQ(Errors({[](auto& f) { f.Kill("C:\\d\\folder"); },
                      [](auto& f) { f.FileCopy("C:\\d\\a.txt", "C:\\d\\folder"); },
                      [](auto& f) { f.FileCopy("C:\\d\\a.txt", "C:\\D\\A.TXT"); },
                      [](auto& f) { f.OpenInput("C:\\d\\folder"); }, [](auto& f) { f.OpenOutput("C:\\d\\folder"); },
                      [](auto& f) { f.Name("C:\\d\\a.txt", "C:\\d\\B.TXT"); },
                      [](auto& f) { f.MkDir("C:\\d\\folder"); }, [](auto& f) { f.MkDirs("C:\\d\\a.txt\\x"); },
                      [&](auto& f) { f.OpenOutput(nul); }, [&](auto& f) { f.ReplaceFile(nul, "x"); }}),
              std::vector<int>(10, kPathFileAccess));
    // Nothing was changed by any of them.
    EXPECT_EQ(OnDisk("d"), (Names{"a.txt", "b.txt", "folder"}));
    EXPECT_EQ(Get("d/a.txt") + Get("d/b.txt"), "ab");
}

TEST_F(FileSystemTest, CopyRenameAndDelete) {
    std::string bytes;
    for (int i = 0; i < 300000; ++i) bytes += std::string("x\0\r\n\xff", 5);   // more than one copy chunk
    Put("d/big.bin", bytes);
    Put("d/b.cif", "b");
    Put("d/c.cif", "c");
    Files().FileCopy("C:\\D\\BIG.BIN", "C:\\d\\Copy.bin");
    EXPECT_EQ(Get("d/Copy.bin"), bytes);
    Files().Name("C:\\d\\b.cif", "C:\\d\\B.CIF");   // a change of case only
    Files().Name("C:\\d\\c.cif", "C:\\e.cif");      // to another folder
    EXPECT_EQ(OnDisk("d"), (Names{"B.CIF", "Copy.bin", "big.bin"}));
    EXPECT_EQ(Get("e.cif"), "c");
    Files().Kill("C:\\d\\*.BIN");
    EXPECT_EQ(OnDisk("d"), Names{"B.CIF"});
}

TEST_F(FileSystemTest, OutputsAppearWholeWhenClosedAlsoWhenAnErrorEndsTheWriting) {
    Put("d/o.sxs", "old\r\n");
    {
        OutputFile out = Files().OpenOutput("C:\\d\\O.SXS");
        out.PrintLine("one");
        out.Print("two");
        out.Flush();
        EXPECT_EQ(OnDisk("d"), Names{"o.sxs"});   // nothing else, not even a hidden file
        EXPECT_EQ(Get("d/o.sxs"), "old\r\n");
    }
    EXPECT_EQ(Get("d/o.sxs"), "one\r\ntwo");
    // Appending starts from a copy of the file.
    OutputFile more = Files().OpenAppend("C:\\D\\o.sxs");
    more.PrintLine(" three");
    EXPECT_EQ(Get("d/o.sxs"), "one\r\ntwo");
    more.Close();
    EXPECT_EQ(Get("d/o.sxs"), "one\r\ntwo three\r\n");
    InputFile in = Files().OpenInput("C:\\d\\o.sxs");
    EXPECT_EQ(in.LineInput(), "one");
    EXPECT_EQ(in.LineInput(), "two three");
    EXPECT_TRUE(in.Eof());

    // An error that ends the program leaves what was written, as a file written in place would.
    const int error = ErrorOf([&] {
        OutputFile cut = Files().OpenAppend("C:\\d\\new.xxs");
        cut.PrintLine("first");
        Raise(kInputPastEnd);
    });
    EXPECT_EQ(error, kInputPastEnd);
    EXPECT_EQ(Get("d/new.xxs"), "first\r\n");
    Files().OpenOutput("C:\\d\\o.sxs").Close();   // emptied
    EXPECT_EQ(Files().FileLen("C:\\d\\o.sxs"), 0);
    EXPECT_EQ(OnDisk("d"), (Names{"new.xxs", "o.sxs"}));
}

TEST_F(FileSystemTest, ReplacementsTakeEffectOnlyOnCommitAndAFailedWriteLeavesTheOldFile) {
    Put("d/t.log", "old");
    {
        Replacement givenUp = Files().OpenReplacement("C:\\d\\T.LOG");
        givenUp.File().PrintLine("half");
        EXPECT_EQ(Files().Dir("C:\\d\\*"), Names{"t.log"});   // the temporary file is never offered
    }
    EXPECT_EQ(OnDisk("d"), Names{"t.log"});
    EXPECT_EQ(Get("d/t.log"), "old");
    Replacement r = Files().OpenReplacement("C:\\d\\T.LOG");
    r.File().PrintLine("new");
    r.Commit();
    Files().ReplaceFile("C:\\d\\created.log", "made");
    EXPECT_EQ(OnDisk("d"), (Names{"created.log", "t.log"}));
    EXPECT_EQ(Get("d/t.log") + Get("d/created.log"), "new\r\nmade");

    // A file-size limit makes the write of the new file fail, for the super-user too.
    rlimit saved{};
    getrlimit(RLIMIT_FSIZE, &saved);
    const auto oldHandler = signal(SIGXFSZ, SIG_IGN);
    rlimit small{1024, saved.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const int error = ErrorOf([&] { Files().ReplaceFile("C:\\d\\t.log", std::string(4096, 'n')); });
    setrlimit(RLIMIT_FSIZE, &saved);
    signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(error, kPathFileAccess);
    EXPECT_EQ(OnDisk("d"), (Names{"created.log", "t.log"}));
    EXPECT_EQ(Get("d/t.log"), "new\r\n");
}

TEST_F(FileSystemTest, AFullDiskIsError61) {
    FileSystem dev(DriveMap({{'D', "/dev"}}));
    OutputFile full = dev.AppendInPlace("D:\\full");
    full.Print("x");
    EXPECT_EQ(ErrorOf([&] { full.Flush(); }), kDiskFull);
}

TEST_F(FileSystemTest, LeftoversOfKilledRunsGoAndNothingElse) {
    // A process that has ended, whose number names a leftover.
    const pid_t gone = fork();
    if (gone == 0) _exit(0);
    waitpid(gone, nullptr, 0);
    const std::string dead = ".t.log.ravelo-tmp-" + std::to_string(gone) + "-0";
    const std::string alive = ".t.log.ravelo-tmp-" + std::to_string(getppid()) + "-1";
    for (const std::string& name : {dead, alive, std::string(".t.log.ravelo-tmp-x-0"),
                                    "t.log.ravelo-tmp-" + std::to_string(gone) + "-0", std::string(".t.log.swp")})
        Put("e/" + name, "left");
    Files().ReplaceFile("C:\\e\\t.log", "new");
    EXPECT_EQ(OnDisk("e"), (Names{alive, ".t.log.ravelo-tmp-x-0", ".t.log.swp", "t.log",
                                  "t.log.ravelo-tmp-" + std::to_string(gone) + "-0"}));
}

}  // namespace
}  // namespace ravelo::platform
