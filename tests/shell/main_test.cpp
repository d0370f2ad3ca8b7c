// Start-up: reading the command line, the installation check, the main
// window and the dispatch of command words.
#include <gtest/gtest.h>

#include <tuple>

#include "runtime/error.hpp"
#include "shell/raveloutilx.hpp"
#include "shell/run.hpp"
#include "ui/script_host.hpp"
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

TEST(CommandLine, ReadingTheCommandLine) {
    struct Case {
        const char* line;
        int calls;             // of the converter
        const char* wordTail;  // as the converter, or else the program, saw them
        int libraryCount;
        int pause;  // milliseconds of the closing pause, -1: not checked
    };
    const Case cases[] = {
        // A bare name of a known type starts the converter.
        {"C:\\Data\\Crambin.PDB", 1, "fileconv|C:\\Data\\Crambin.PDB", 0, -1},
        // The type test is a substring test on the last three characters:
        // "ol2" lies inside the "mol2" of the type list; ".cc" lies nowhere.
        {"c:\\data\\x.mol2", 1, "fileconv|c:\\data\\x.mol2", 0, -1},
        {"C:\\DATA\\X.CC", 0, "c:\\data\\x.cc|", 0, -1},
        {"updtmol", 1, "fileconv|updtmol", 0, -1},  // alone, it is taken as a file name
        // One digit at the end is the library count: no closing pause then.
        {"fileconv c:\\data\\x.cif 3", 1, "fileconv|c:\\data\\x.cif 3", 3, 0},
        // Two digits or zero leave it at zero; a start with count 0 pauses a second.
        {"fileconv c:\\data\\x.cif 12", 1, "fileconv|c:\\data\\x.cif 12", 0, 1000},
        {"fileconv c:\\data\\x.cif 0", 1, "fileconv|c:\\data\\x.cif 0", 0, -1},
        {"C:\\My Data\\x.pdb", 0, "c:\\my|Data\\x.pdb", 0, -1},  // a blank splits a bare name
    };
    for (const Case& c : cases) {
        TestProgram t;
        t.Install();
        Seen fileconv, updtmol;
        Record(t.program(), "fileconv", fileconv);
        Record(t.program(), "updtmol", updtmol);
        EXPECT_EQ(t.Run(c.line), 0) << c.line;
        EXPECT_EQ(fileconv.calls, c.calls) << c.line;
        EXPECT_EQ(updtmol.calls, 0) << c.line;
        if (c.calls) {
            EXPECT_EQ(fileconv.word + "|" + fileconv.tail, c.wordTail);
            EXPECT_EQ(fileconv.libraryCount, c.libraryCount) << c.line;
        } else {
            EXPECT_EQ(t.program().CommandWord + "|" + t.program().CommandTail, c.wordTail);
        }
        if (c.pause >= 0) {
            EXPECT_GE(t.clock().millis, static_cast<unsigned>(c.pause)) << c.line;
            EXPECT_LT(t.clock().millis, c.pause + 100u) << c.line;
        }
    }
}

TEST(CommandLine, WildcardWordBecomesItsFirstMatchInNameOrderAndAnUnknownWordEndsQuietly) {
    TestProgram t;
    t.Install();
    for (const char* name : {"b.txt", "a.txt", "C.txt"}) t.Write(std::string("C:\\d\\") + name, "12345678");
    Seen first;
    Record(t.program(), "c:\\d\\c.txt", first);
    EXPECT_EQ(t.Run("C:\\d\\*.txt"), 0);
    EXPECT_EQ(first.calls, 1);  // upper case sorts before lower case, so C.txt comes first
    EXPECT_EQ(t.Run("ravelobatch"), 0);  // with the main window hidden
    EXPECT_EQ(t.Output(), "");
}

constexpr const char* kCriticalBox =
    "MSGBOX RaveloUtils - Critical Error|The critical file RAVELODRIVE.DAT cannot be found in the root "
    "Directory C:\\programdata\\ravelo. \\nIf there is a copy in the \\Ravelo directory, then copy this file "
    "to C:\\programdata\\ravelo. \\nA copy can be downloaded from the Kalmodyn web site.\\n\\nI am sorry, but "
    "I must terminate.\n";

TEST(Installation, DriveFileAndModeller) {
    // A missing drive file, or one under eight bytes (deleted), is a
    // critical error; a missing modeller ends silently.
    const std::tuple<const char*, const char*, int, std::string> cases[] = {
        {nullptr, nullptr, kExitInstallation, kCriticalBox},
        {"\"C:\"\r\n1", nullptr, kExitInstallation, kCriticalBox},
        {"\"Kalmodyn\",\"2026\",\"C:\"\r\n", "C:\\ravelo\\kalculator.exe", kExitInstallation, ""},
        // The third field names the drive, and the modeller is found in any case.
        {"Kalmodyn, 2026,  C:  \r\n", "C:\\RAVELO\\KALMODYN.EXE", 0, ""},
    };
    for (const auto& [driveFile, exe, status, output] : cases) {
        TestProgram t;
        if (driveFile) t.Write("C:\\programdata\\ravelo\\ravelodrive.dat", driveFile);
        if (exe) t.Write(exe, "stand-in\r\n");
        EXPECT_EQ(t.Run(status ? "calculx" : "ravelobatch"), status);
        EXPECT_EQ(t.Output(), output);
        if (!status) {
            EXPECT_EQ(t.program().InstallDrive + t.program().ModellerExe, "C:Kalmodyn.Exe");
        } else if (driveFile) {
            EXPECT_EQ(t.Exists("C:\\programdata\\ravelo\\ravelodrive.dat"), exe != nullptr);
        }
    }
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
    const std::string saved[] = {getenv("QT_QPA_PLATFORM") ? getenv("QT_QPA_PLATFORM") : "",
                                 getenv("WAYLAND_DISPLAY") ? getenv("WAYLAND_DISPLAY") : ""};
    unsetenv("QT_QPA_PLATFORM");
    unsetenv("WAYLAND_DISPLAY");
    EXPECT_STREQ(chosen("headless", ":99", desktop), "headless");
    EXPECT_STREQ(chosen("Qt", nullptr, desktop), "desktop");
    EXPECT_STREQ(chosen("qt", nullptr, nullptr), "headless");   // a build without the desktop host
    EXPECT_STREQ(chosen("script", ":99", desktop), "script");
    EXPECT_STREQ(chosen(nullptr, nullptr, desktop), "headless");   // no display at all
    EXPECT_STREQ(chosen(nullptr, ":99", desktop), "desktop");
    EXPECT_STREQ(chosen(nullptr, ":99", nullptr), "headless");
    setenv("QT_QPA_PLATFORM", "offscreen", 1);   // a platform named outright
    EXPECT_STREQ(chosen(nullptr, nullptr, desktop), "desktop");
    unsetenv("RAVELO_UI");
    unsetenv("DISPLAY");
    saved[0].empty() ? unsetenv("QT_QPA_PLATFORM") : setenv("QT_QPA_PLATFORM", saved[0].c_str(), 1);
    if (!saved[1].empty()) setenv("WAYLAND_DISPLAY", saved[1].c_str(), 1);
}

}  // namespace
}  // namespace ravelo
