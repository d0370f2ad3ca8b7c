// The database transfer: the recorded run, the demo installation, and the
// cases that decide where records go and which log lines get their "*".
#include "moldb/updatmol.hpp"
#include "ui/form.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "mollog/golden_run.hpp"
#include "support/error_of.hpp"
#include "support/test_program.hpp"

namespace ravelo::UpdatMol {
namespace {

using test::ErrorOf;

const std::string kHeading = "\"File path/Name\"\r\n\"Molecule Description\"\r\n\"Molecular Formula\"\r\n";
// The log's header, and as the marking copy leaves it: every line quoted.
const std::string kLogHeader = kHeading + "\"Molecular Energy\"\r\nDate*\r\n";
const std::string kMarkedHeader = kHeading + "\"Molecular Energy\"\r\n\"Date*\"\r\n";
// Settings for seven fields; the description goes to fields 2 to 4.
std::string Settings(int limit, int dateField = 7) {
    return "limit," + std::to_string(limit) + "\r\ndesc,2,3,4\r\nformula,5\r\npath,1\r\nenergy,6\r\ndate," +
           std::to_string(dateField) + "\r\n";
}
constexpr const char* kClick = "click UpdtMolForm1.Command1\n";
constexpr const char* kDump = "dump UpdtMolForm1\n";

// A log record as the modeller writes it, and as the marking copy leaves it.
std::string Record(const std::string& path, const std::string& description, const std::string& date) {
    return "\"" + path + "\"\r\n\"" + description + "\"\r\n\"C1\"\r\n\"0\"\r\n" + date + "\r\n";
}
std::string Marked(const std::string& path, const std::string& description, const std::string& date) {
    return Record(path, description, "\"" + date + "\"");
}

// A subfile: its header, the 11 template lines, then `body`.
std::string Subfile(const std::string& header, const std::string& body = "") {
    std::string text = header + "\r\n";
    for (int k = 1; k <= 11; ++k) text += "\"template " + std::to_string(k) + "\"\r\n";
    return text + body;
}

// The seven field lines of a Record() whose description stays whole.
std::string Fields(const std::string& path, const std::string& description, const std::string& date) {
    return "\"\"" + path + "\" * ravelo *\"\r\n\"\"" + description +
           "\"\"\r\n\"V\"\r\n\"V\"\r\n\"\"C1\"\"\r\n" + "\"\"0\"\"\r\n\"<" + date + ">\"\r\n";
}

// An installation with the settings, subfile 001 and a log (none if empty),
// and a run of "updtmol now" with the script, without pauses.
struct Transfer {
    Transfer(const std::string& script, const std::string& log, const std::string& subfile001,
             const std::string& settings = Settings(100))
        : t(script, 0) {
        t.Install();
        t.Write("C:\\ravelo\\updtmol.dat", settings);
        t.Write("C:\\dmor\\molecule.001", subfile001);
        if (!log.empty()) t.Write("C:\\ravelo\\molecule.log", log);
        status = t.Run("updtmol now");
    }
    bool Shows(const std::string& dumpLine) {
        return t.Output().find("UpdtMolForm1." + dumpLine + "\n") != std::string::npos;
    }
    test::TestProgram t;
    int status = -1;
};

TEST(UpdtMolGolden, TransfersAsRecorded) { test::ExpectGoldenRun("updtmol"); }

TEST(UpdtMolDemo, TransfersTheDemoLogThenHasNothingLeft) {
    test::TempFolder work;  // the demo log holds two records, neither transferred
    std::filesystem::copy(std::filesystem::path(RAVELO_TEST_DATA) / "../../demo/drive_c", work.Path() / "c",
                          std::filesystem::copy_options::recursive);
    const auto run = test::RunScripted(work.Path(), {"updtmol", "now"}, std::string(kClick) + kClick + kClick + kDump);
    EXPECT_NE(run.out.find("Command1\t0\t-\tGO\n"), std::string::npos) << run.out << run.err;
    const std::string subfile = test::ReadHostFile(work.Path() / "c/dmor/molecule.001");
    EXPECT_EQ(subfile.substr(0, 12), "7,0,20,1,2\r\n");
    EXPECT_EQ(std::count(subfile.begin(), subfile.end(), '\n'), 1 + 11 + 2 * 7);
    const std::string log = test::ReadHostFile(work.Path() / "c/ravelo/molecule.log");
    EXPECT_NE(log.find("\"11-20-2026*\"\r\n\"C:\\ravelo\\mols\\mol12\""), std::string::npos) << log;
    EXPECT_EQ(log.substr(log.size() - 15), "\"11-21-2026*\"\r\n");
}

TEST(UpdatMolNames, SubfilesHaveThreeDigitsAndCopiesEndInTmp) {
    test::TestProgram t;
    t.program().InstallDrive = "C:";
    EXPECT_EQ(SubfilePath(t.program(), 1) + SubfilePath(t.program(), 12) + SubfilePath(t.program(), 120),
              "C:\\dmor\\molecule.001C:\\dmor\\molecule.012C:\\dmor\\molecule.120");
    EXPECT_EQ(TempCopyPath("C:\\dmor\\molecule.012"), "C:\\dmor\\molecule.tmp");
}

TEST(SplitDescription, PiecesOfWidthLessOneOnlyWhenLongerThanTheWidth) {
    using Parts = std::array<std::string, 3>;
    const std::string d = "123456789012345678901234567890123456789012345";
    const std::pair<std::string, Parts> cases[] = {
        {d, {d.substr(0, 19), d.substr(19, 19), "9012345"}}, {d.substr(0, 20), {d.substr(0, 20), "V", "V"}},
        {d.substr(0, 21), {d.substr(0, 19), "01", "V"}}, {d.substr(0, 38), {d.substr(0, 19), d.substr(19, 19), "V"}},
        {d + d, {d.substr(0, 19), d.substr(19, 19), d.substr(38, 7) + d.substr(0, 12)}}, {"", {"V", "V", "V"}},
    };
    for (const auto& [description, parts] : cases) EXPECT_EQ(SplitDescription(description, 20), parts) << description;
    EXPECT_EQ(ErrorOf([] { SplitDescription("ab", 0); }), 5);
}

TEST(UpdateDatabase, FullSubfileIsSkippedAndTheNextMadeFromTheTemplate) {
    // Limit 2: 001 is full. The 45 characters (quotes included) go 19, 19, 7.
    const std::string description = "Methyl ester of a long-chain acid, isomer B";
    const std::string full001 = Subfile("7,2.5,20,1,2", "\"old\"\r\n");
    Transfer x(std::string(kClick) + kClick + kDump,
               kLogHeader + Record("C:\\m\\a.sxs", description, "11-20-2026"), full001, Settings(2));
    EXPECT_EQ(x.status, 0);
    EXPECT_EQ(x.t.Read("C:\\dmor\\molecule.001"), full001);
    // Item 2 is carried over as it stands; the template lines keep their quotes.
    EXPECT_EQ(
        x.t.Read("C:\\dmor\\molecule.002"),
        Subfile("7,2.5,20,2,1",
                "\"\"C:\\m\\a.sxs\" * ravelo *\"\r\n\"\"Methyl ester of a \"\r\n\"long-chain acid, is\"\r\n"
                "\"omer B\"\"\r\n\"\"C1\"\"\r\n\"\"0\"\"\r\n\"<11-20-2026>\"\r\n"));
    EXPECT_EQ(x.t.Read("C:\\ravelo\\molecule.log"),
              kMarkedHeader + Marked("C:\\m\\a.sxs", description, "11-20-2026*"));
    EXPECT_FALSE(x.t.Exists("C:\\dmor\\molecule.tmp") || x.t.Exists("C:\\ravelo\\molecule.tmp"));
}

TEST(UpdateDatabase, RoomOfOneLeavesTheRestForTheNextGo) {
    // Limit 3 and two records in 001: one record fits; the next GO opens 002.
    const std::string log = kLogHeader + Record("C:\\m\\a.sxs", "a", "01-01-2026") +
                            Record("C:\\m\\b.sxs", "b", "01-02-2026") +
                            Record("C:\\m\\c.sxs", "c", "01-03-2026");
    const std::string body = Fields("C:\\m\\x.sxs", "x", "x") + Fields("C:\\m\\y.sxs", "y", "y");
    Transfer x(std::string(kClick) + kClick + kDump, log, Subfile("7,0,20,1,2", body), Settings(3));
    EXPECT_TRUE(x.Shows("Label4\t1\t-\t1 of these have been transferred"));
    EXPECT_TRUE(x.Shows("Label5\t1\t-\t2 new records have not yet been transferred."));
    EXPECT_TRUE(x.Shows("Label6\t1\tFFFFC0\tContinue to transfer these records by clicking GO"));
    EXPECT_TRUE(x.Shows("Command1\t1\t-\tGO"));
    EXPECT_EQ(x.t.Read("C:\\dmor\\molecule.001"),
              Subfile("7,0,20,1,3", body + Fields("C:\\m\\a.sxs", "a", "01-01-2026")));
    EXPECT_EQ(x.t.Read("C:\\ravelo\\molecule.log"),
              kMarkedHeader + Marked("C:\\m\\a.sxs", "a", "01-01-2026*") +
                  Marked("C:\\m\\b.sxs", "b", "01-02-2026") + Marked("C:\\m\\c.sxs", "c", "01-03-2026"));
    EXPECT_FALSE(x.t.Exists("C:\\dmor\\molecule.002"));
}

TEST(UpdateDatabase, MissingOrBadSettingsEndTheRun) {
    const std::string log = kLogHeader + Record("C:\\m\\a.sxs", "a", "01-01-2026");
    {
        // A settings file under 16 bytes is deleted and reported; the read fails.
        Transfer x(std::string(kClick) + kClick, log, Subfile("7,0,20,1,0"), "limit,1\r\n");
        EXPECT_EQ(x.status, 3);
        EXPECT_FALSE(x.t.Exists("C:\\ravelo\\updtmol.dat"));
        EXPECT_EQ((*x.t.program().ExistingWindow("UpdtMolForm1"))["Label6"].Caption(),
                  "No UPDTMOL.DAT file was found.  Must terminate.");
        EXPECT_NE(x.t.Output().find("Run-time error '53'"), std::string::npos);
    }
    {
        // Field 8 of a seven-field database.
        Transfer x(std::string(kClick) + kClick, log, Subfile("7,0,20,1,0"), Settings(100, 8));
        EXPECT_NE(x.t.Output().find("Run-time error '9'"), std::string::npos);
        EXPECT_EQ(x.t.Read("C:\\ravelo\\molecule.log"), log);
    }
}

TEST(UpdateDatabase, MissingLogShowsTwoAndEnds) {
    Transfer x(std::string(kClick) + kDump, "", Subfile("7,0,20,1,0"));
    EXPECT_EQ(x.t.Output(), "MSGBOX RaveloUtils|2\n");
    EXPECT_FALSE(x.t.Exists("C:\\ravelo\\molecule.log"));
}

TEST(UpdtMolForm1, MainMenuLabelOpensTheWindow) {
    test::TestProgram t("click RaveloUtils.Label9\ndump UpdtMolForm1\n", 0);
    t.Install();
    t.Run("");
    EXPECT_NE(t.Output().find("UpdtMolForm1.Command1\t1\t-\tBEGIN\n"), std::string::npos) << t.Output();
}

}  // namespace
}  // namespace ravelo::UpdatMol
