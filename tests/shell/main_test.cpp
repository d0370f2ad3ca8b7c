// Start-up: reading the command line, the installation check, the main
// window and the dispatch of command words.
#include <gtest/gtest.h>

#include "runtime/error.hpp"
#include "shell/raveloutilx.hpp"
#include "shell/run.hpp"
#include "core/shared.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

// What a utility saw when the dispatcher called it.
struct Seen {
    int calls = 0;
    std::string word, tail;
    std::int32_t libraryCount = -1;
};

void Record(Program& p, const std::string& word, Seen& seen) {
    p.utilities[word] = [&seen](Program& program) {
        ++seen.calls;
        seen.word = program.CommandWord;
        seen.tail = program.CommandTail;
        seen.libraryCount = program.LibraryCount;
    };
}

class CommandLine : public testing::Test {
protected:
    void SetUp() override {
        t.Install();
        Record(t.program(), "fileconv", fileconv);
    }
    TestProgram t;
    Seen fileconv;
};

TEST_F(CommandLine, BareNameOfAKnownTypeStartsTheConverter) {
    EXPECT_EQ(t.Run("C:\\Data\\Crambin.PDB"), 0);
    EXPECT_EQ(fileconv.calls, 1);
    EXPECT_EQ(fileconv.word, "fileconv");
    EXPECT_EQ(fileconv.tail, "C:\\Data\\Crambin.PDB");
    EXPECT_EQ(fileconv.libraryCount, 0);
}

TEST_F(CommandLine, TypeTestIsASubstringTestOnTheLastThreeCharacters) {
    // "ol2" lies inside the "mol2" of the type list; ".cc" lies nowhere.
    EXPECT_EQ(t.Run("c:\\data\\x.mol2"), 0);
    EXPECT_EQ(fileconv.calls, 1);

    TestProgram other;
    other.Install();
    Seen unknown;
    Record(other.program(), "fileconv", unknown);
    EXPECT_EQ(other.Run("C:\\DATA\\X.CC"), 0);
    EXPECT_EQ(unknown.calls, 0);
    EXPECT_EQ(other.program().CommandWord, "c:\\data\\x.cc");
}

TEST_F(CommandLine, UpdtmolAloneIsTakenAsAFileName) {
    Seen updtmol;
    Record(t.program(), "updtmol", updtmol);
    t.Run("updtmol");
    EXPECT_EQ(updtmol.calls, 0);
    EXPECT_EQ(fileconv.calls, 1);
    EXPECT_EQ(fileconv.tail, "updtmol");
}

TEST_F(CommandLine, OneDigitAtTheEndIsTheLibraryCount) {
    t.Run("fileconv c:\\data\\x.cif 3");
    EXPECT_EQ(fileconv.word, "fileconv");
    EXPECT_EQ(fileconv.tail, "c:\\data\\x.cif 3");
    EXPECT_EQ(fileconv.libraryCount, 3);
    // No closing pause after a library entry's conversion.
    EXPECT_EQ(t.clock().millis, 0u);
}

TEST_F(CommandLine, TwoDigitsOrZeroLeaveTheCountAtZero) {
    t.Run("fileconv c:\\data\\x.cif 12");
    EXPECT_EQ(fileconv.libraryCount, 0);
    // A command-line start with count 0 pauses one second before it ends.
    EXPECT_GE(t.clock().millis, 1000u);
    EXPECT_LT(t.clock().millis, 1100u);

    TestProgram zero;
    zero.Install();
    Seen seen;
    Record(zero.program(), "fileconv", seen);
    zero.Run("fileconv c:\\data\\x.cif 0");
    EXPECT_EQ(seen.libraryCount, 0);
    EXPECT_EQ(seen.tail, "c:\\data\\x.cif 0");
}

TEST_F(CommandLine, BlankInABareNameSplitsIt) {
    t.Run("C:\\My Data\\x.pdb");
    EXPECT_EQ(fileconv.calls, 0);
    EXPECT_EQ(t.program().CommandWord, "c:\\my");
    EXPECT_EQ(t.program().CommandTail, "Data\\x.pdb");
}

TEST_F(CommandLine, WildcardWordBecomesItsFirstMatchInNameOrder) {
    t.Write("C:\\d\\b.txt", "12345678");
    t.Write("C:\\d\\a.txt", "12345678");
    t.Write("C:\\d\\C.txt", "12345678");
    Seen first;
    Record(t.program(), "c:\\d\\c.txt", first);
    t.Run("C:\\d\\*.txt");
    // Upper case sorts before lower case, so C.txt comes first.
    EXPECT_EQ(first.calls, 1);
}

TEST_F(CommandLine, UnknownWordWithHiddenMainWindowEndsQuietly) {
    EXPECT_EQ(t.Run("ravelobatch"), 0);
    EXPECT_EQ(t.Output(), "");
}

class Installation : public testing::Test {
protected:
    TestProgram t;
};

constexpr const char* kCriticalBox =
    "MSGBOX RaveloUtils - Critical Error|The critical file RAVELODRIVE.DAT cannot be found in the root "
    "Directory C:\\programdata\\ravelo. \\nIf there is a copy in the \\Ravelo directory, then copy this file "
    "to C:\\programdata\\ravelo. \\nA copy can be downloaded from the Kalmodyn web site.\\n\\nI am sorry, but "
    "I must terminate.\n";

TEST_F(Installation, MissingDriveFileIsACriticalError) {
    EXPECT_EQ(t.Run("calculx"), kExitInstallation);
    EXPECT_EQ(t.Output(), kCriticalBox);
}

TEST_F(Installation, DriveFileOfSevenBytesIsDeletedAndReportedMissing) {
    t.Write("C:\\programdata\\ravelo\\ravelodrive.dat", "\"C:\"\r\n1");
    EXPECT_EQ(t.Run(""), kExitInstallation);
    EXPECT_EQ(t.Output(), kCriticalBox);
    EXPECT_FALSE(t.Exists("C:\\programdata\\ravelo\\ravelodrive.dat"));
}

TEST_F(Installation, MissingModellerEndsSilently) {
    t.Write("C:\\programdata\\ravelo\\ravelodrive.dat", "\"Kalmodyn\",\"2026\",\"C:\"\r\n");
    t.Write("C:\\ravelo\\kalculator.exe", "not the modeller");
    EXPECT_EQ(t.Run(""), kExitInstallation);
    EXPECT_EQ(t.Output(), "");
}

TEST_F(Installation, ThirdFieldNamesTheDriveAndTheModellerIsFoundInAnyCase) {
    t.Write("C:\\programdata\\ravelo\\ravelodrive.dat", "Kalmodyn, 2026,  C:  \r\n");
    t.Write("C:\\RAVELO\\KALMODYN.EXE", "stand-in for the modeller\r\n");
    EXPECT_EQ(t.Run("ravelobatch"), 0);
    EXPECT_EQ(t.program().InstallDrive, "C:");
    EXPECT_EQ(t.program().ModellerExe, "Kalmodyn.Exe");
}

TEST(MainWindow, ShowsTheMenuWithReadUrlsHidden) {
    TestProgram t("dump RaveloUtils\n");
    t.Install();
    EXPECT_EQ(t.Run(""), 0);
    EXPECT_EQ(t.Output(),
              "RaveloUtils.Label1\t1\t-\tThe Ravelo Suite of Utilities\n"
              "RaveloUtils.Label2\t1\t-\tBatch Structure Energy Minimizer\n"
              "RaveloUtils.Label3\t1\t-\tCalculx\n"
              "RaveloUtils.Label4\t1\t-\tFile Converter\n"
              "RaveloUtils.Label5\t1\t-\tMolecular Inventory\n"
              "RaveloUtils.Label6\t1\t-\tClone Molecule.Log into Molecule.Htm\n"
              "RaveloUtils.Label7\t0\t-\tRead URLs\n"
              "RaveloUtils.Label8\t1\t-\tMolecular Slide Show\n"
              "RaveloUtils.Label9\t1\t-\tUpdate Dmor Molecular Log\n"
              "RaveloUtils.Label10\t1\t-\t" + VersionLine() + "\n"
              "RaveloUtils.Command1\t1\t-\tEXIT\n"
              "END\n");
}

TEST(MainWindow, UtilityNotOfferedIsSaidOnTheCopyrightLabel) {
    TestProgram t("click RaveloUtils.Label8\ndump RaveloUtils\n");
    t.Install();
    t.Run("");
    EXPECT_NE(t.Output().find("RaveloUtils.Label10\t1\t-\tSorry, this application is not currently offered.\n"),
              std::string::npos);
    // The message stands for five seconds.
    EXPECT_GE(t.clock().millis, 5000u);
}

TEST(MainWindow, LabelOpensItsUtilityAndExitEndsTheProgram) {
    TestProgram t("click RaveloUtils.Label3\nclick RaveloUtils.Command1\ndump RaveloUtils\n");
    t.Install();
    Seen calculx;
    Record(t.program(), "calculx", calculx);
    EXPECT_EQ(t.Run(""), 0);
    EXPECT_EQ(calculx.calls, 1);
    // The dump after EXIT is not run: the window, and with it the program, is gone.
    EXPECT_EQ(t.Output(), "");
}

TEST(WindowOption, ShowsTheNamedWindowInsteadOfTheMenu) {
    TestProgram t("dump RaveloUtils\n");
    t.Install();
    EXPECT_EQ(t.Run("", "NoSuchWindow"), kExitUsage);
    EXPECT_EQ(t.Run("", "raveloutils"), 0);
    EXPECT_NE(t.Output().find("RaveloUtils.Command1"), std::string::npos);
}

TEST(RuntimeErrors, AreReportedAndEndWithStatusThree) {
    TestProgram t;
    t.Install();
    t.program().utilities["fileconv"] = [](Program&) { Raise(kInputPastEnd); };
    EXPECT_EQ(t.Run("fileconv c:\\x.xyz"), kExitRuntimeError);
    EXPECT_EQ(t.Output(), "MSGBOX RaveloUtils|Run-time error '62':\\n\\nInput past end of file\n");
}

}  // namespace
}  // namespace ravelo
