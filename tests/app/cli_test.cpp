// The program as a user starts it: options, the installation check, the
// script host, deleting by command, and the translation of host paths.
#include <gtest/gtest.h>

#include "core/program.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::ReadHostFile;
using test::RunBinary;
using test::TempFolder;
using test::WriteHostFile;

class Cli : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(temp());
        env = {{"RAVELO_DRIVE_C", driveC().string()}, {"TEMP", temp().string()}, {"RAVELO_WAIT_SCALE", "0"},
               {"RAVELO_UI", "headless"}};
    }
    void Install(const std::filesystem::path& drive = {}) {
        const auto c = drive.empty() ? driveC() : drive;
        WriteHostFile(c / "programdata/ravelo/ravelodrive.dat", "\"Kalmodyn\",\"2026\",\"C:\"\r\n");
        WriteHostFile(c / "ravelo/Kalmodyn.Exe", "stand-in for the modeller executable\r\n");
    }
    std::filesystem::path driveC() const { return root.Path() / "c"; }
    std::filesystem::path temp() const { return root.Path() / "temp"; }

    TempFolder root;
    std::map<std::string, std::string> env;
};

TEST_F(Cli, HelpAndVersionAnswerBeforeStartUp) {
    const auto help = RunBinary({"--help"}, env);
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("usage: raveloutils"), std::string::npos);
    EXPECT_NE(help.out.find("RAVELO_DRIVE_C"), std::string::npos);

    const auto version = RunBinary({"--version"}, env);
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, VersionLine() + "\n");
    EXPECT_EQ(version.out.rfind("RaveloUtils ", 0), 0u);

    EXPECT_EQ(RunBinary({"--frobnicate"}, env).status, 2);
}

TEST_F(Cli, EmptyDriveEndsEveryWordWithTheCriticalError) {
    std::filesystem::create_directories(driveC());
    for (const char* word : {"calculx", "fileconv", "nonsense"}) {
        const auto run = RunBinary({word}, env);
        EXPECT_EQ(run.status, 1) << word;
        // As a person reads it: the title, the text's own lines, then where
        // drive C is and how to fill it.
        EXPECT_EQ(run.err.rfind("RaveloUtils - Critical Error\nThe critical file RAVELODRIVE.DAT cannot be found", 0),
                  0u)
            << word;
        EXPECT_NE(run.err.find("\n\nI am sorry, but I must terminate.\nraveloutils: drive C is the folder " +
                               driveC().string() + " "),
                  std::string::npos);
        EXPECT_NE(run.err.find("--install-demo"), std::string::npos);
    }
    env["RAVELO_UI"] = "script";
    const auto scripted = RunBinary({"calculx"}, env);
    EXPECT_EQ(scripted.out.rfind("MSGBOX RaveloUtils - Critical Error|The critical file", 0), 0u);
    EXPECT_EQ(scripted.err, "");
}

TEST_F(Cli, InstallDemoFillsAnEmptyFolderAndRefusesAnyOther) {
    std::filesystem::create_directories(driveC());
    const auto run = RunBinary({"--install-demo"}, env);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find(driveC().string()), std::string::npos);
    EXPECT_TRUE(std::filesystem::exists(driveC() / "programdata/ravelo/ravelodrive.dat"));
    // The program now finds its installation; an unknown word with the
    // main window hidden ends silently.
    const auto unknown = RunBinary({"slideshow"}, env);
    EXPECT_EQ(unknown.status, 0);
    EXPECT_EQ(unknown.out + unknown.err, "");

    const std::string before = ReadHostFile(driveC() / "ravelo/molecule.log");
    WriteHostFile(driveC() / "ravelo/molecule.log", "mine");
    const auto again = RunBinary({"--install-demo", driveC().string()}, env);
    EXPECT_EQ(again.status, 2);
    EXPECT_NE(again.err.find("is not an empty folder"), std::string::npos);
    EXPECT_EQ(ReadHostFile(driveC() / "ravelo/molecule.log"), "mine");
    EXPECT_FALSE(before.empty());

    const auto elsewhere = root.Path() / "new" / "drive";
    EXPECT_EQ(RunBinary({"--install-demo", elsewhere.string()}, env).status, 0);
    EXPECT_EQ(ReadHostFile(elsewhere / "ravelo/molecule.log"), before);
}

TEST_F(Cli, WindowsThatWaitForAPersonSayTheyNeedADisplay) {
    Install();
    for (const auto& [word, window] : std::vector<std::pair<std::string, std::string>>{
             {"", "RaveloUtils"}, {"calculx", "CalcxForm"}, {"fileconv", "FileConv"}}) {
        const auto run = RunBinary(word.empty() ? std::vector<std::string>{} : std::vector{word}, env);
        EXPECT_EQ(run.status, 4) << word;
        EXPECT_NE(run.err.find("the window " + window + " waits for a person"), std::string::npos) << run.err;
        EXPECT_NE(run.err.find("RAVELO_UI=script"), std::string::npos);
    }
}

TEST_F(Cli, HostPathsIntoDriveCKeepTheDrivesFolderOutOfThePath) {
    // Drive C under a folder with a point, as ~/.local is: the path the
    // converter cuts and renames starts at the drive.
    const auto dottedC = root.Path() / ".local" / "c";
    env["RAVELO_DRIVE_C"] = dottedC.string();
    Install(dottedC);
    WriteHostFile(dottedC / "more/w.xyz", "3\r\nwater\r\nO 0.0 0.0 0.1173\r\nH 0.0 0.7572 -0.4692\r\nH 0.0 -0.7572 -0.4692\r\n");
    const auto run = RunBinary({"fileconv", (dottedC / "more/w.xyz").string()}, env);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(std::filesystem::exists(dottedC / "more/w.sxs"));
}

TEST_F(Cli, ScriptHostShowsTheMainMenu) {
    Install();
    env["RAVELO_UI"] = "script";
    const auto run = RunBinary({}, env, "dump RaveloUtils\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("RaveloUtils.Label7\t0\t-\tRead URLs\n"), std::string::npos);
    EXPECT_NE(run.out.find("RaveloUtils.Command1\t1\t-\tEXIT\nEND\n"), std::string::npos);

    // A script file named by RAVELO_SCRIPT serves as well.
    WriteHostFile(root.Path() / "script.txt", "dump RaveloUtils\r\nclick RaveloUtils.Command1\r\n");
    env["RAVELO_SCRIPT"] = (root.Path() / "script.txt").string();
    const auto fromFile = RunBinary({"--window", "RaveloUtils"}, env);
    EXPECT_EQ(fromFile.status, 0);
    EXPECT_NE(fromFile.out.find("RaveloUtils.Label1\t1\t-\tThe Ravelo Suite of Utilities\n"), std::string::npos);
}

TEST_F(Cli, DeleteFileByHostPathAndByRelativePath) {
    Install();
    const auto target = root.Path() / "some dir" / "victim.sxs";
    WriteHostFile(target, "atoms\r\n");
    // A host path with a blank arrives as two words; quotes keep it whole.
    const auto run = RunBinary({"ravelodelfile", "\"" + target.string() + "\""}, env);
    EXPECT_EQ(run.status, 0);
    EXPECT_FALSE(std::filesystem::exists(target));

    WriteHostFile(root.Path() / "sub" / "other.sxs", "atoms\r\n");
    EXPECT_EQ(RunBinary({"ravelodelfile", "sub/other.sxs"}, env, {}, root.Path()).status, 0);
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
