// The program as a user starts it: options, the installation check, the
// script host, deleting by command.
#include <gtest/gtest.h>

#include "core/program.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::ReadHostFile;
using test::RunBinary;
using test::WriteHostFile;

class Cli : public testing::Test {
protected:
    void Install() {
        WriteHostFile(driveC() / "programdata/ravelo/ravelodrive.dat", "\"Kalmodyn\",\"2026\",\"C:\"\r\n");
        WriteHostFile(driveC() / "ravelo/Kalmodyn.Exe", "stand-in for the modeller executable\r\n");
    }
    std::filesystem::path driveC() const { return root.Path() / "c"; }

    test::TempFolder root;
    std::map<std::string, std::string> env = {{"RAVELO_DRIVE_C", driveC().string()}, {"TEMP", root.Path().string()},
                                              {"RAVELO_WAIT_SCALE", "0"}, {"RAVELO_UI", "headless"}};
};

TEST_F(Cli, HelpAndVersionAnswerBeforeStartUp) {
    const auto help = RunBinary({"--help"}, env);
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.out.rfind("usage: raveloutils", 0), 0u);
    const auto version = RunBinary({"--version"}, env);
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, VersionLine() + "\n");
    EXPECT_EQ(version.out.rfind("RaveloUtils ", 0), 0u);
    EXPECT_EQ(RunBinary({"--frobnicate"}, env).status, 2);
}

TEST_F(Cli, EmptyDriveEndsWithTheCriticalErrorAndWhereDriveCIs) {
    std::filesystem::create_directories(driveC());
    const auto run = RunBinary({"calculx"}, env);
    EXPECT_EQ(run.status, 1);
    // As a person reads it: the title, the text's own lines, then where
    // drive C is and how to fill it.
    EXPECT_EQ(run.err.rfind("RaveloUtils - Critical Error\nThe critical file RAVELODRIVE.DAT cannot be found", 0), 0u);
    EXPECT_NE(run.err.find("\n\nI am sorry, but I must terminate.\nraveloutils: drive C is the folder " +
                           driveC().string() + " (RAVELO_DRIVE_C); raveloutils --install-demo copies"),
              std::string::npos);
    env["RAVELO_UI"] = "script";
    const auto scripted = RunBinary({"nonsense"}, env);
    EXPECT_EQ(scripted.out.rfind("MSGBOX RaveloUtils - Critical Error|The critical file", 0), 0u);
    EXPECT_EQ(scripted.err, "");
}

TEST_F(Cli, InstallDemoFillsAnEmptyFolderAndRefusesAnyOther) {
    std::filesystem::create_directories(driveC());
    const auto run = RunBinary({"--install-demo"}, env);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find(driveC().string()), std::string::npos);
    // The program now finds its installation; an unknown word with the
    // main window hidden ends silently.
    const auto unknown = RunBinary({"slideshow"}, env);
    EXPECT_EQ(unknown.status, 0);
    EXPECT_EQ(unknown.out + unknown.err, "");

    const std::string before = ReadHostFile(driveC() / "ravelo/molecule.log");
    EXPECT_FALSE(before.empty());
    WriteHostFile(driveC() / "ravelo/molecule.log", "mine");
    const auto again = RunBinary({"--install-demo", driveC().string()}, env);
    EXPECT_EQ(again.status, 2);
    EXPECT_NE(again.err.find("is not an empty folder"), std::string::npos);
    EXPECT_EQ(ReadHostFile(driveC() / "ravelo/molecule.log"), "mine");
    EXPECT_EQ(RunBinary({"--install-demo", (root.Path() / "new/drive").string()}, env).status, 0);
    EXPECT_EQ(ReadHostFile(root.Path() / "new/drive/ravelo/molecule.log"), before);
}

TEST_F(Cli, WindowsThatWaitForAPersonSayTheyNeedADisplay) {
    Install();
    for (const auto& [word, window] : std::vector<std::pair<std::string, std::string>>{
             {"", "RaveloUtils"}, {"calculx", "CalcxForm"}, {"fileconv", "FileConv"}}) {
        const auto run = RunBinary(word.empty() ? std::vector<std::string>{} : std::vector{word}, env);
        EXPECT_EQ(run.status, 4) << word;
        EXPECT_EQ(run.err, "raveloutils: the window " + window +
                               " waits for a person, and there is no display to show it on.\nStart it on a desktop "
                               "(DISPLAY set and RAVELO_UI unset or qt), or drive it from a\nscript with "
                               "RAVELO_UI=script (see raveloutils --help).\n");
    }
}

TEST_F(Cli, ScriptHostReadsTheFileRaveloScriptNames) {
    Install();
    WriteHostFile(root.Path() / "script.txt", "dump RaveloUtils\r\nclick RaveloUtils.Command1\r\n");
    env["RAVELO_UI"] = "script";
    env["RAVELO_SCRIPT"] = (root.Path() / "script.txt").string();
    const auto run = RunBinary({}, env);
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("RaveloUtils.Label1\t1\t-\tThe Ravelo Suite of Utilities\n"), std::string::npos);
}

TEST_F(Cli, DeleteFileByHostPathAndByRelativePath) {
    Install();
    const auto target = root.Path() / "some dir" / "victim.sxs";
    WriteHostFile(target, "atoms\r\n");
    WriteHostFile(root.Path() / "sub" / "other.sxs", "atoms\r\n");
    // A host path with a blank arrives as two words; quotes keep it whole.
    EXPECT_EQ(RunBinary({"ravelodelfile", "\"" + target.string() + "\""}, env).status, 0);
    EXPECT_EQ(RunBinary({"ravelodelfile", "sub/other.sxs"}, env, {}, root.Path()).status, 0);
    EXPECT_FALSE(std::filesystem::exists(target));
    EXPECT_FALSE(std::filesystem::exists(root.Path() / "sub" / "other.sxs"));
}

TEST_F(Cli, RunTimeErrorInTheDriveFileIsReportedWithStatusThree) {
    // A drive file with one field: reading the second is past the end.
    WriteHostFile(driveC() / "programdata/ravelo/ravelodrive.dat", "\"only one field\"");
    const auto run = RunBinary({"calculx"}, env);
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.err, "RaveloUtils\nRun-time error '62':\n\nInput past end of file\n");
}

}  // namespace
}  // namespace ravelo
