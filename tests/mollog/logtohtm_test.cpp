// The molecule log copier: the recorded run, the mode words, link texts,
// the HTML header, and the logs and pages that end a copy early.
#include "mollog/logtohtm.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "mollog/golden_run.hpp"
#include "support/test_program.hpp"

namespace ravelo::LogToHtm {
namespace {

using test::TestProgram;

constexpr const char* kHeaderNoStar =
    "\"File path/Name\"\r\n\"Molecule Description\"\r\n\"Molecular Formula\"\r\n\"Molecular "
    "Energy\"\r\n\"Date\"\r\n";
constexpr const char* kOne = "\"C:\\m\\one.sxs\"\r\n\"first\"\r\n\"C1\"\r\n\"0\"\r\n11-19-2026*\r\n";
constexpr const char* kTwo = "\"C:\\m\\two.sxs\"\r\n\"second\"\r\n\"C2\"\r\n\"1\"\r\n11-20-2026\r\n";
// What kOne becomes in the index.
constexpr const char* kOneBlock =
    "<a href=\"C:\\m\\one.sxs\">C:\\m\\one.sxs</a><br>\r\nfirst<br>\r\nC1<br>\r\n0<br>\r\n11-19-2026*<br>\r\n"
    "<hr size=1>\r\n";

// The index header as recorded, dated with the test clock's day.
std::string IndexHeader() {
    std::string htm =
        test::ReadHostFile(std::filesystem::path(RAVELO_TEST_DATA) / "logtohtm/after/ravelo/molecule.htm");
    htm.erase(htm.find("<a href="));
    return htm.replace(htm.find("@TODAY@"), 7, "11-22-2026");
}

// The href lines of an index, one a line.
std::string Links(const std::string& htm) {
    std::istringstream lines(htm);
    std::string links;
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("<a href=", 0) == 0) links += line.substr(0, line.find('>')) + "\n";
    return links;
}

// An installation with a log; `command` runs the script without pauses.
struct Copier {
    Copier(const std::string& log, const std::string& script, const std::string& command = "logtohtm")
        : t(script, 0) {
        t.Install();
        if (!log.empty()) t.Write("C:\\ravelo\\molecule.log", log);
        status = t.Run(command);
    }
    TestProgram t;
    int status = -1;
};

TEST(LogToHtmGolden, CopiesBothWaysAsRecorded) { test::ExpectGoldenRun("logtohtm"); }

TEST(ModeWord, OnlyTheWordAllChoosesAll) {
    EXPECT_EQ(ModeWord("ALL "), "all");
    EXPECT_EQ(ModeWord(" all"), "all");
    EXPECT_EQ(ModeWord("al"), "new");
    EXPECT_EQ(ModeWord("all new"), "new");
    EXPECT_EQ(ModeWord(""), "new");
}

TEST(CopyLogToHtml, TheModeDecidesWhereCopyingStarts) {
    const std::string one = "<a href=\"C:\\m\\one.sxs\"\n", two = "<a href=\"C:\\m\\two.sxs\"\n";
    // "new": after the first line ending in "*", the date of record one.
    Copier marked(kHeaderNoStar + std::string(kOne) + kTwo, "click LogHtmForm1.Label3\n");
    EXPECT_EQ(Links(marked.t.Read("C:\\ravelo\\molecule.htm")), two);
    // "all": after the first line holding "date" in any case, the header's last.
    Copier all(kHeaderNoStar + std::string(kOne) + kTwo, "click LogHtmForm1.Label3\n", "logtohtm ALL");
    EXPECT_EQ(Links(all.t.Read("C:\\ravelo\\molecule.htm")), one + two);
    // A record above that line is not copied.
    Copier above(kTwo + std::string(kHeaderNoStar) + kOne, "click LogHtmForm1.Label3\n", "logtohtm all");
    EXPECT_EQ(Links(above.t.Read("C:\\ravelo\\molecule.htm")), one);
    // "new" without any "*": from the top, where only path lines start records.
    std::string unmarked = kHeaderNoStar + std::string(kOne) + kTwo;
    unmarked.erase(unmarked.find('*'), 1);
    Copier none(unmarked, "click LogHtmForm1.Label3\n");
    EXPECT_EQ(Links(none.t.Read("C:\\ravelo\\molecule.htm")), one + two);
}

TEST(LinkText, CutToCharacters65To122AtBothEnds) {
    EXPECT_EQ(LinkText("\"C:\\ravelo\\mols\\mol12\""), "C:\\ravelo\\mols\\mol");
    EXPECT_EQ(LinkText("  \"C:\\m\\aspirin.sxs\"  "), "C:\\m\\aspirin.sxs");
    EXPECT_EQ(LinkText("\"C:\\m\\caf\xE9\""), "C:\\m\\caf");  // byte 233 is above 122
    EXPECT_EQ(LinkText("\"C:\\m\\x_1~\""), "C:\\m\\x_");      // "~" is 126, "_" 95
    EXPECT_EQ(LinkText("\"1234\""), "");
}

TEST(MakeHtmlHeaders, StubIndexIsReplacedByOneHeaderAndAFullPageIsKept) {
    TestProgram t("", 0);
    t.Install();
    t.Write("C:\\ravelo\\molecule.log", kHeaderNoStar + std::string(kOne));
    t.Write("C:\\ravelo\\molecule.htm", "<html>");  // 6 bytes: a broken leftover
    t.Write("C:\\ravelo\\MolSrchData.htm", "kept as it is\r\n");
    EXPECT_EQ(t.Run("logtohtm"), 0);
    EXPECT_EQ(t.Read("C:\\ravelo\\molecule.htm"), IndexHeader());
    EXPECT_EQ(t.Read("C:\\ravelo\\MolSrchData.htm"), "kept as it is\r\n");
}

TEST(CopyLogToHtml, PartialLastRecordEndsInError62AfterTheCompleteOnes) {
    Copier run(kHeaderNoStar + std::string(kOne) + "\"C:\\m\\b.sxs\"\r\n\"half\"\r\n",
               "click LogHtmForm1.Label3\n", "logtohtm all");
    EXPECT_EQ(run.status, 3);
    EXPECT_NE(run.t.Output().find("MSGBOX RaveloUtils|Run-time error '62':\\n\\nInput past end of file"),
              std::string::npos);
    EXPECT_EQ(run.t.Read("C:\\ravelo\\molecule.htm"), IndexHeader() + kOneBlock);
}

TEST(CopyHtmlToLog, LinksBecomeRecordsAfterTheHeaderAndShortOnesAreDropped) {
    // The second link's record holds 8 characters once its tags go: too short.
    TestProgram t("click LogHtmForm1.Label4\n", 0);
    t.Install();
    t.Write("C:\\ravelo\\molecule.log", kHeaderNoStar);
    t.Write("C:\\ravelo\\molecule.htm",
            std::string("<html>\r\n") + kOneBlock +
                "<a href=\"C:\\a\">a</a><br>\r\nb<br>\r\nc<br>\r\nd<br>\r\ne<br>\r\n<hr size=1>\r\n");
    t.Write("C:\\ravelo\\molecule.txt", "kept\r\n");
    EXPECT_EQ(t.Run("logtohtm"), 0);
    EXPECT_EQ(
        t.Read("C:\\ravelo\\molecule.txt"),
        "kept\r\n\"File path/Name\"\r\n\"Molecule Description\"\r\n\"Molecular Formula\"\r\n"
        "\"Molecular "
        "Energy\"\r\n\"Date*\"\r\n\"C:\\m\\one.sxs\"\r\n\"first\"\r\n\"C1\"\r\n\"0\"\r\n11-19-2026*\r\n");
}

TEST(LogHtmForm1, MissingLogIsReportedThePagesMadeAndACopyFails) {
    TestProgram t("dump LogHtmForm1\nclick LogHtmForm1.Label3\n", 0);
    t.Install();
    EXPECT_EQ(t.Run("logtohtm"), 3);
    EXPECT_NE(
        t.Output().find("LogHtmForm1.Label2\t1\t-\tThe file MOLECULE.LOG is missing.  End the program.\n"),
        std::string::npos);
    EXPECT_NE(t.Output().find("Run-time error '53'"), std::string::npos);
    EXPECT_EQ(t.Read("C:\\ravelo\\molecule.htm"), IndexHeader());
    EXPECT_TRUE(t.Exists("C:\\ravelo\\MolSrchData.htm"));
}

TEST(LogHtmForm1, MainMenuLabelOpensTheWindow) {
    TestProgram t("click RaveloUtils.Label6\ndump LogHtmForm1\n", 0);
    t.Install();
    t.Write("C:\\ravelo\\molecule.log", kHeaderNoStar + std::string(kOne));
    t.Run("");
    EXPECT_NE(t.Output().find("LogHtmForm1.Label2\t1\t-\tReady to proceed\n"), std::string::npos)
        << t.Output();
}

}  // namespace
}  // namespace ravelo::LogToHtm
