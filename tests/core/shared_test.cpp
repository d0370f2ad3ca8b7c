// The shared routines: file existence, waits, the shell, paths, TEMP,
// deleting by command and the converter logs.
#include <gtest/gtest.h>

#include <tuple>

#include "core/shared.hpp"
#include "runtime/error.hpp"
#include "support/test_program.hpp"
#include "ui/host.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

TEST(FileExists, ShortFilesAreDeletedAndTheirPathBecomesAMessage) {
    TestProgram t;
    t.Write("C:\\d\\seven.dat", "1234567");
    t.Write("C:\\d\\eight.dat", "12345678");

    std::string path = "C:\\d\\seven.dat";
    EXPECT_FALSE(FileExists(t.program(), path));
    EXPECT_EQ(path, "Datafile C:\\d\\seven.dat is missing.");
    EXPECT_FALSE(t.Exists("C:\\d\\seven.dat"));

    path = "c:\\D\\EIGHT.DAT";   // names are found in any case
    int readOnly = -1;
    EXPECT_TRUE(FileExists(t.program(), path, &readOnly));
    EXPECT_EQ(path, "c:\\D\\EIGHT.DAT");
    EXPECT_EQ(readOnly, 0);

    path = "C:\\d\\none.dat";
    EXPECT_FALSE(FileExists(t.program(), path));
    EXPECT_EQ(path, "Datafile C:\\d\\none.dat is missing.");

    path.clear();
    EXPECT_FALSE(FileExists(t.program(), path));
    EXPECT_EQ(path, "");
}

TEST(WaitSeconds, BelowTenIsSecondsFromTenOnMillisecondsNegativeAtOnceAndScaleZeroSkips) {
    const std::tuple<double, double, bool, unsigned> cases[] = {
        // seconds, wait scale, returned flag, milliseconds waited
        {9.9, 1, false, 9900}, {10, 1, false, 10}, {500, 1, false, 500}, {-5, 1, true, 0}, {5, 0, false, 0},
    };
    for (const auto& [seconds, scale, flag, millis] : cases) {
        TestProgram t({}, scale);
        EXPECT_EQ(WaitSeconds(t.program(), seconds), flag) << seconds;
        EXPECT_EQ(t.program().WaitFlag, flag) << seconds;
        EXPECT_EQ(t.clock().millis, millis) << seconds;
    }
}

// A window whose button ends an untimed wait, as the program's buttons do.
class StopButton : public ui::Form {
public:
    explicit StopButton(Program& p) : Form(p.ui, "Stopper", "Stopper") {
        Add("Command1", ui::ControlKind::Button, "Stop").onClick = [&p] { p.WaitFlag = true; };
    }
};

TEST(WaitSeconds, ZeroAndMinusHundredWaitForTheFlagOrEndTheProgramWhenNothingIsLeftToHappen) {
    for (double seconds : {0.0, -100.0}) {
        TestProgram t("click Stopper\nclick Stopper.Command1\n");
        StopButton form(t.program());
        t.program().ui.Show(form);
        EXPECT_TRUE(WaitSeconds(t.program(), seconds));
        EXPECT_TRUE(t.program().WaitFlag);
        form.Unload();
        EXPECT_THROW(WaitSeconds(t.program(), seconds), ProgramEnd);
    }
}

TEST(RunAndWait, WaitsForTheCommandToFinish) {
    TestProgram t;
    const auto marker = t.DriveC() / "done.txt";
    RunAndWait(t.program(), "sleep 0.2; echo done > '" + marker.string() + "'");
    EXPECT_EQ(test::ReadHostFile(marker), "done\n");
    // The shell's start is followed by a two-second pause.
    EXPECT_EQ(t.clock().millis, 2000u);
    RunAndWait(t.program(), "exit 7");   // errors are ignored
}

TEST(GetFilePath, KeepsTheDirectoryWithItsBackslash) {
    for (const auto& [path, dir] : {std::pair{"C:\\data\\x.pdb", "C:\\data\\"}, {"x.pdb", "unchanged"}, {"", "unchanged"}}) {
        std::string got = "unchanged";
        GetFilePath(path, got);
        EXPECT_EQ(got, dir) << path;
    }
}

TEST(CountMatchingFiles, CountsWildcardMatchesInAnyCase) {
    TestProgram t;
    for (const char* name : {"a.PDB", "b.pdb", "c.xyz"}) t.Write(std::string("C:\\d\\") + name, "x");
    EXPECT_EQ(CountMatchingFiles(t.program(), "C:\\d\\*.pdb"), 2);
    EXPECT_EQ(CountMatchingFiles(t.program(), "C:\\d\\?.*"), 3);
    EXPECT_EQ(CountMatchingFiles(t.program(), "C:\\none\\*.*"), 0);
}

TEST(TempDir, FirstTempStringWinsAndAnEmptyStringEndsTheScan) {
    // Start-up takes the value as it stands; GetTempDir trims it.
    TestProgram t({}, 1, {"HOME=/root", "TEMP=  C:\\tmp  ", "TEMP=C:\\other"});
    t.Install();
    t.Run("ravelobatch");
    EXPECT_EQ(t.program().TempDir, "  C:\\tmp  ");
    t.program().TempDir.clear();
    GetTempDir(t.program());
    EXPECT_EQ(t.program().TempDir, "C:\\tmp");

    TestProgram hidden({}, 1, {"HOME=/root", "", "TEMP=C:\\tmp"});
    GetTempDir(hidden.program());
    EXPECT_EQ(hidden.program().TempDir, "");
}

TEST(DeleteFileByCommand, DeletesAFileOrEveryMatchQuotesRemoved) {
    TestProgram t;
    t.Install();
    for (const char* name : {"one.tmp", "two.tmp", "keep.txt", "single file.sxs"}) t.Write(std::string("C:\\d\\") + name, "x");
    EXPECT_EQ(t.Run("ravelodelfile \"C:\\d\\single file.sxs\""), 0);
    EXPECT_FALSE(t.Exists("C:\\d\\single file.sxs"));
    EXPECT_TRUE(t.Exists("C:\\d\\one.tmp"));
    EXPECT_EQ(t.Run("ravelodelfile C:\\d\\*.TMP"), 0);
    EXPECT_FALSE(t.Exists("C:\\d\\one.tmp") || t.Exists("C:\\d\\two.tmp"));
    EXPECT_TRUE(t.Exists("C:\\d\\keep.txt"));
    EXPECT_EQ(t.Run("ravelodelfile C:\\d\\none.tmp"), 0);  // a file that is not there is no error
}

TEST(ConverterLogs, StartUpClearsThemAndTheStatLineNamesTheWord) {
    TestProgram t;
    t.Install();
    const auto logs = t.Temp() / "Ravelo";
    test::WriteHostFile(logs / "RaveloFilConvN.Txt", "\"old entry\"\r\n");
    test::WriteHostFile(logs / "RaveloFilConvStat.Txt", "\"fileconv terminated\"\r\n");
    t.program().utilities["fileconv"] = [](Program& p) { WriteFilConvStat(p); };
    t.Run("fileconv c:\\x.xyz");
    EXPECT_FALSE(std::filesystem::exists(logs / "RaveloFilConvN.Txt"));
    EXPECT_EQ(test::ReadHostFile(logs / "RaveloFilConvStat.Txt"), "\"fileconv terminated\"\r\n");
}

}  // namespace
}  // namespace ravelo
