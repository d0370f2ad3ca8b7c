// The shared routines: file existence, waits, the shell, paths, TEMP and
// deleting by command.
#include <gtest/gtest.h>

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

TEST(WaitSeconds, BelowTenIsSecondsFromTenOnMilliseconds) {
    TestProgram t;
    EXPECT_FALSE(WaitSeconds(t.program(), 9.9));
    EXPECT_EQ(t.clock().millis, 9900u);
    t.clock().millis = 0;
    WaitSeconds(t.program(), 10);
    EXPECT_EQ(t.clock().millis, 10u);
    t.clock().millis = 0;
    WaitSeconds(t.program(), 500);
    EXPECT_EQ(t.clock().millis, 500u);
}

TEST(WaitSeconds, NegativeValuesReturnAtOnceWithTheFlagSet) {
    TestProgram t;
    EXPECT_TRUE(WaitSeconds(t.program(), -5));
    EXPECT_TRUE(t.program().WaitFlag);
    EXPECT_EQ(t.clock().millis, 0u);
}

TEST(WaitSeconds, ScaleZeroSkipsTimedPauses) {
    TestProgram t({}, 0);
    EXPECT_FALSE(WaitSeconds(t.program(), 5));
    EXPECT_EQ(t.clock().millis, 0u);
}

// A window with a button that ends an untimed wait, as the program's
// buttons do.
class StopButton : public ui::Form {
public:
    explicit StopButton(Program& p) : Form(p.ui, "Stopper", "Stopper") {
        Add("Command1", ui::ControlKind::Button, "Stop").onClick = [&p] { p.WaitFlag = true; };
    }
};

TEST(WaitSeconds, ZeroAndMinusHundredWaitForTheFlag) {
    for (double seconds : {0.0, -100.0}) {
        TestProgram t("click Stopper\nclick Stopper.Command1\n");
        StopButton form(t.program());
        t.program().ui.Show(form);
        EXPECT_TRUE(WaitSeconds(t.program(), seconds));
        EXPECT_TRUE(t.program().WaitFlag);
        form.Unload();
    }
}

TEST(WaitSeconds, UntimedWaitWithNothingLeftToHappenEndsTheProgram) {
    TestProgram t;
    EXPECT_THROW(WaitSeconds(t.program(), 0), ProgramEnd);
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
    std::string dir = "unchanged";
    GetFilePath("C:\\data\\x.pdb", dir);
    EXPECT_EQ(dir, "C:\\data\\");
    dir = "unchanged";
    GetFilePath("x.pdb", dir);
    EXPECT_EQ(dir, "unchanged");
    GetFilePath("", dir);
    EXPECT_EQ(dir, "unchanged");
}

TEST(CountMatchingFiles, CountsWildcardMatchesInAnyCase) {
    TestProgram t;
    t.Write("C:\\d\\a.PDB", "x");
    t.Write("C:\\d\\b.pdb", "x");
    t.Write("C:\\d\\c.xyz", "x");
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
    t.Write("C:\\d\\one.tmp", "x");
    t.Write("C:\\d\\two.tmp", "x");
    t.Write("C:\\d\\keep.txt", "x");
    t.Write("C:\\d\\single file.sxs", "x");
    EXPECT_EQ(t.Run("ravelodelfile \"C:\\d\\single file.sxs\""), 0);
    EXPECT_FALSE(t.Exists("C:\\d\\single file.sxs"));

    TestProgram again;
    again.Install();
    again.Write("C:\\d\\one.tmp", "x");
    again.Write("C:\\d\\two.tmp", "x");
    again.Write("C:\\d\\keep.txt", "x");
    EXPECT_EQ(again.Run("ravelodelfile C:\\d\\*.TMP"), 0);
    EXPECT_FALSE(again.Exists("C:\\d\\one.tmp"));
    EXPECT_FALSE(again.Exists("C:\\d\\two.tmp"));
    EXPECT_TRUE(again.Exists("C:\\d\\keep.txt"));
    // A file that is not there is no error.
    EXPECT_EQ(again.Run("ravelodelfile C:\\d\\none.tmp"), 0);
}

TEST(ConverterLogs, StartUpClearsThemAndTheStatLineNamesTheWord) {
    TestProgram t;
    t.Install();
    t.Write("C:\\x\\placeholder", "");
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
