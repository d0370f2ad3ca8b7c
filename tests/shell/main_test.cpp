// Start-up: reading the command line, the installation check, the main
// window and the dispatch of command words.
#include <gtest/gtest.h>

#include <tuple>

#include "shell/run.hpp"
#include "ui/script_host.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

// Makes `word` a utility that notes, at each call, the word, tail and
// library count it saw.
void Record(Program& p, const std::string& word, std::string& seen) {
    p.utilities[word] = [&seen](Program& q) {
        seen += q.CommandWord + "|" + q.CommandTail + "|" + std::to_string(q.LibraryCount) + ";";
    };
}

TEST(CommandLine, ReadingTheCommandLine) {
    // The line, and what the converter saw (or else "not called" and what the program holds).
    const std::pair<const char*, const char*> cases[] = {
        // A bare name of a known type starts the converter.
        {"C:\\Data\\Crambin.PDB", "fileconv|C:\\Data\\Crambin.PDB|0;"},
        // The type test is a substring test on the last three characters:
        // "ol2" lies inside the "mol2" of the type list; ".cc" lies nowhere.
        {"c:\\data\\x.mol2", "fileconv|c:\\data\\x.mol2|0;"},
        {"C:\\DATA\\X.CC", "not called c:\\data\\x.cc|"},
        {"updtmol", "fileconv|updtmol|0;"},  // alone, it is taken as a file name
        // One digit at the end is the library count; two digits or zero leave it at zero.
        {"fileconv c:\\data\\x.cif 3", "fileconv|c:\\data\\x.cif 3|3;"},
        {"fileconv c:\\data\\x.cif 12", "fileconv|c:\\data\\x.cif 12|0;"},
        {"fileconv c:\\data\\x.cif 0", "fileconv|c:\\data\\x.cif 0|0;"},
        {"C:\\My Data\\x.pdb", "not called c:\\my|Data\\x.pdb"},  // a blank splits a bare name
    };
    for (const auto& [line, expected] : cases) {
        TestProgram t;
        t.Install();
        std::string seen;
        Record(t.program(), "fileconv", seen);
        EXPECT_EQ(t.Run(line), 0) << line;
        const Program& p = t.program();
        EXPECT_EQ(seen.empty() ? "not called " + p.CommandWord + "|" + p.CommandTail : seen, expected);
        // A start with library count 0 ends with a pause of a second.
        const unsigned pause = p.LibraryCount ? 0 : 1000;
        EXPECT_GE(t.clock().millis, pause) << line;
        EXPECT_LT(t.clock().millis, pause + 100u) << line;
    }
}

TEST(CommandLine, WildcardWordBecomesItsFirstMatchInNameOrderAndAnUnknownWordEndsQuietly) {
    TestProgram t;
    t.Install();
    for (const char* name : {"b.txt", "a.txt", "C.txt"}) t.Write(std::string("C:\\d\\") + name, "12345678");
    std::string seen;
    Record(t.program(), "c:\\d\\c.txt", seen);
    EXPECT_EQ(t.Run("C:\\d\\*.txt"), 0);
    EXPECT_EQ(seen, "c:\\d\\c.txt||0;");  // upper case sorts before lower case, so C.txt comes first
    EXPECT_EQ(t.Run("ravelobatch"), 0);  // with the main window hidden
    EXPECT_EQ(t.Output(), "");
}

constexpr const char* kCriticalBox =
    "MSGBOX RaveloUtils - Critical Error|The critical file RAVELODRIVE.DAT cannot be found in the root "
    "Directory C:\\programdata\\ravelo. \\nIf there is a copy in the \\Ravelo directory, then copy this file "
    "to C:\\programdata\\ravelo. \\nA copy can be downloaded from the Kalmodyn web site.\\n\\nI am sorry, but "
    "I must terminate.\n";

TEST(Installation, DriveFileAndModeller) {
    // A missing drive file, or one under eight bytes (deleted), is a critical error; a missing modeller ends silently.
    // The drive file, the modeller's executable, the status, the output, and the drive and modeller found.
    const std::tuple<const char*, const char*, int, std::string, const char*> cases[] = {
        {nullptr, nullptr, kExitInstallation, kCriticalBox, ""},
        {"\"C:\"\r\n1", nullptr, kExitInstallation, kCriticalBox, ""},
        {"\"Kalmodyn\",\"2026\",\"C:\"\r\n", "C:\\ravelo\\kalculator.exe", kExitInstallation, "", "C:"},
        // The third field names the drive, and the modeller is found in any case.
        {"Kalmodyn, 2026,  C:  \r\n", "C:\\RAVELO\\KALMODYN.EXE", 0, "", "C:Kalmodyn.Exe"},
    };
    for (const auto& [driveFile, exe, status, output, found] : cases) {
        TestProgram t;
        if (driveFile) t.Write("C:\\programdata\\ravelo\\ravelodrive.dat", driveFile);
        if (exe) t.Write(exe, "stand-in\r\n");
        EXPECT_EQ(t.Run(status ? "calculx" : "ravelobatch"), status);
        EXPECT_EQ(t.Output(), output);
        EXPECT_EQ(t.program().InstallDrive + t.program().ModellerExe, found);
        EXPECT_EQ(t.Exists("C:\\programdata\\ravelo\\ravelodrive.dat"), driveFile && exe);
    }
}

TEST(MainWindow, NamedWindowShowsTheMenuWithReadUrlsHiddenAndExitEndsTheProgram) {
    TestProgram t("dump RaveloUtils\nclick RaveloUtils.Command1\ndump RaveloUtils\n");
    t.Install();
    EXPECT_EQ(t.Run("", "NoSuchWindow"), kExitUsage);
    EXPECT_EQ(t.Run("", "raveloutils"), 0);
    // One dump: the window, and with it the program, is gone after EXIT.
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

TEST(MainWindow, LabelOpensItsUtilityOrSaysForFiveSecondsThatItIsNotOffered) {
    TestProgram t("click RaveloUtils.Label3\nclick RaveloUtils.Label8\ndump RaveloUtils\n");
    t.Install();
    std::string calculx;
    Record(t.program(), "calculx", calculx);
    EXPECT_EQ(t.Run(""), 0);
    EXPECT_EQ(calculx, "calculx||0;");
    EXPECT_NE(t.Output().find("RaveloUtils.Label10\t1\t-\tSorry, this application is not currently offered.\n"),
              std::string::npos);
    EXPECT_GE(t.clock().millis, 5000u);
}

#ifndef _WIN32   // the choice by display is the rule of POSIX desktops
// A host that only says who it is.
class MarkerHost : public ui::HeadlessHost {};

TEST(HostChoice, DesktopWhenAskedForOrWhenThereIsADisplay) {
    const DesktopHostFactory desktop = [] { return std::make_unique<MarkerHost>(); };
    const auto chosen = [&](const char* ui, const char* display, const DesktopHostFactory& factory) {
        ui ? setenv("RAVELO_UI", ui, 1) : unsetenv("RAVELO_UI");
        display ? setenv("DISPLAY", display, 1) : unsetenv("DISPLAY");
        const Services services = ServicesFromEnvironment(factory);
        if (dynamic_cast<MarkerHost*>(services.ui.get())) return "desktop";
        return dynamic_cast<ui::ScriptHost*>(services.ui.get()) ? "script" : "headless";
    };
    for (const char* name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY"}) unsetenv(name);
    EXPECT_STREQ(chosen("headless", ":99", desktop), "headless");
    EXPECT_STREQ(chosen("Qt", nullptr, desktop), "desktop");
    EXPECT_STREQ(chosen("qt", nullptr, nullptr), "headless");   // a build without the desktop host
    EXPECT_STREQ(chosen("script", ":99", desktop), "script");
    EXPECT_STREQ(chosen(nullptr, nullptr, desktop), "headless");   // no display at all
    EXPECT_STREQ(chosen(nullptr, ":99", desktop), "desktop");
    EXPECT_STREQ(chosen(nullptr, ":99", nullptr), "headless");
    setenv("QT_QPA_PLATFORM", "offscreen", 1);   // a platform named outright
    EXPECT_STREQ(chosen(nullptr, nullptr, desktop), "desktop");
    for (const char* name : {"RAVELO_UI", "DISPLAY", "QT_QPA_PLATFORM"}) unsetenv(name);
}
#endif

}  // namespace
}  // namespace ravelo
