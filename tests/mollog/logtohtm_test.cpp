// The molecule log copier: the recorded run, modes, link texts, headers, early ends.
#include "mollog/logtohtm.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>

#include "mollog/golden_run.hpp"
#include "support/test_program.hpp"

namespace ravelo::LogToHtm {
namespace {

constexpr const char* kHeaderNoStar =
    "\"File path/Name\"\r\n\"Molecule Description\"\r\n\"Molecular Formula\"\r\n\"Molecular "
    "Energy\"\r\n\"Date\"\r\n";
constexpr const char* kOne = "\"C:\\m\\one.sxs\"\r\n\"first\"\r\n\"C1\"\r\n\"0\"\r\n11-19-2026*\r\n";
constexpr const char* kTwo = "\"C:\\m\\two.sxs\"\r\n\"second\"\r\n\"C2\"\r\n\"1\"\r\n11-20-2026\r\n";
// What kOne becomes in the index.
constexpr const char* kOneBlock =
    "<a href=\"C:\\m\\one.sxs\">C:\\m\\one.sxs</a><br>\r\nfirst<br>\r\nC1<br>\r\n0<br>\r\n11-19-2026*<br>\r\n"
    "<hr size=1>\r\n";
constexpr const char* kToHtm = "click LogHtmForm1.Label3\n";
constexpr const char* kIndex = "C:\\ravelo\\molecule.htm";

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

// An installation with a log (none if empty) and other files; `command` runs the script.
struct Copier {
    Copier(const std::string& log, const std::string& script, const std::string& command = "logtohtm",
           const std::map<std::string, std::string>& files = {})
        : t(script, 0) {
        t.Install();
        if (!log.empty()) t.Write("C:\\ravelo\\molecule.log", log);
        for (const auto& [path, bytes] : files) t.Write(path, bytes);
        status = t.Run(command);
    }
    bool Says(const std::string& text) { return t.Output().find(text) != std::string::npos; }
    test::TestProgram t;
    int status = -1;
};

TEST(LogToHtmGolden, CopiesBothWaysAsRecorded) { test::ExpectGoldenRun("logtohtm"); }

TEST(LogToHtm, ModeWordsAndLinkTexts) {
    for (const char* all : {"ALL ", " all"}) EXPECT_EQ(ModeWord(all), "all") << all;
    for (const char* other : {"al", "all new", ""}) EXPECT_EQ(ModeWord(other), "new") << other;
    // Link texts are cut to characters 65 to 122 at both ends.
    const std::pair<const char*, const char*> links[] = {
        {"  \"C:\\m\\aspirin.sxs\"  ", "C:\\m\\aspirin.sxs"},
        {"\"C:\\m\\caf\xE9\"", "C:\\m\\caf"},  // byte 233 is above 122
        {"\"C:\\m\\x_1~\"", "C:\\m\\x_"},      // "~" is 126, "_" 95
        {"\"1234\"", ""},
    };
    for (const auto& [line, text] : links) EXPECT_EQ(LinkText(line), text) << line;
}

TEST(CopyLogToHtml, TheModeDecidesWhereCopyingStarts) {
    const std::string one = "<a href=\"C:\\m\\one.sxs\"\n", two = "<a href=\"C:\\m\\two.sxs\"\n";
    const std::string log = kHeaderNoStar + std::string(kOne) + kTwo;
    // "new": after the first line ending in "*", the date of record one.
    EXPECT_EQ(Links(Copier(log, kToHtm).t.Read(kIndex)), two);
    // "all": after the first line holding "date" in any case, the header's last; none above it.
    EXPECT_EQ(Links(Copier(log, kToHtm, "logtohtm ALL").t.Read(kIndex)), one + two);
    EXPECT_EQ(Links(Copier(kTwo + std::string(kHeaderNoStar) + kOne, kToHtm, "logtohtm all").t.Read(kIndex)),
              one);
    // "new" without any "*": from the top, where only path lines start records.
    std::string unmarked = log;
    unmarked.erase(unmarked.find('*'), 1);
    EXPECT_EQ(Links(Copier(unmarked, kToHtm).t.Read(kIndex)), one + two);
}

TEST(CopyLogToHtml, StubIndexIsReplacedByOneHeaderAndAFullPageIsKept) {
    Copier run(kHeaderNoStar + std::string(kOne), "", "logtohtm",
               {{kIndex, "<html>"} /* 6 bytes: a broken leftover */,
                {"C:\\ravelo\\MolSrchData.htm", "kept as it is\r\n"}});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.t.Read(kIndex), IndexHeader());
    EXPECT_EQ(run.t.Read("C:\\ravelo\\MolSrchData.htm"), "kept as it is\r\n");
}

TEST(CopyLogToHtml, PartialLastRecordEndsInError62AfterTheCompleteOnes) {
    Copier run(kHeaderNoStar + std::string(kOne) + "\"C:\\m\\b.sxs\"\r\n\"half\"\r\n", kToHtm, "logtohtm all");
    EXPECT_EQ(run.status, 3);
    EXPECT_TRUE(run.Says("MSGBOX RaveloUtils|Run-time error '62':\\n\\nInput past end of file"));
    EXPECT_EQ(run.t.Read(kIndex), IndexHeader() + kOneBlock);
}

TEST(CopyHtmlToLog, LinksBecomeRecordsAfterTheHeaderAndShortOnesAreDropped) {
    // The second link's record holds 8 characters once its tags go: too short.
    Copier run(kHeaderNoStar, "click LogHtmForm1.Label4\n", "logtohtm",
               {{kIndex, std::string("<html>\r\n") + kOneBlock +
                             "<a href=\"C:\\a\">a</a><br>\r\nb<br>\r\nc<br>\r\nd<br>\r\ne<br>\r\n<hr size=1>\r\n"},
                {"C:\\ravelo\\molecule.txt", "kept\r\n"}});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.t.Read("C:\\ravelo\\molecule.txt"),
              "kept\r\n\"File path/Name\"\r\n\"Molecule Description\"\r\n\"Molecular Formula\"\r\n"
              "\"Molecular Energy\"\r\n\"Date*\"\r\n" + std::string(kOne));
}

TEST(LogHtmForm1, MissingLogIsReportedThePagesMadeAndACopyFails) {
    Copier run("", "dump LogHtmForm1\nclick LogHtmForm1.Label3\n");
    EXPECT_EQ(run.status, 3);
    EXPECT_TRUE(run.Says("LogHtmForm1.Label2\t1\t-\tThe file MOLECULE.LOG is missing.  End the program.\n"));
    EXPECT_TRUE(run.Says("Run-time error '53'"));
    EXPECT_EQ(run.t.Read(kIndex), IndexHeader());
    EXPECT_TRUE(run.t.Exists("C:\\ravelo\\MolSrchData.htm"));
}

TEST(LogHtmForm1, MainMenuLabelOpensTheWindow) {
    Copier run(kHeaderNoStar + std::string(kOne), "click RaveloUtils.Label6\ndump LogHtmForm1\n", "");
    EXPECT_TRUE(run.Says("LogHtmForm1.Label2\t1\t-\tReady to proceed\n")) << run.t.Output();
}

}  // namespace
}  // namespace ravelo::LogToHtm
