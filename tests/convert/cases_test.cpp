// Input files converted as a user converts them ("fileconv"; a MOPAC listing
// is typed into its window), each with its one outcome. tests/data/edge holds
// each reader's edge cases, tests/data/bad malformed input for every reader.
// A table's EXPECTED.tsv gives per input "ends normally" or "error N", every
// file left beside the input ("NAME": bytes in expected/INPUT/NAME; "NAME
// empty"; "input gone" when it was renamed; "log NAME": a converter log in
// TEMP\Ravelo, other logs but the status line being empty) and why the case
// is there. A file read without cleaning must stay as it was.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "support/convert.hpp"

namespace ravelo {
namespace {

namespace fs = std::filesystem;

struct Case {
    std::string input, outcome;
    std::vector<std::string> files;
};

std::vector<Case> LoadCases(const fs::path& table) {
    std::vector<Case> cases;
    std::istringstream lines(test::ReadHostFile(table / "EXPECTED.tsv"));
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        Case c;
        std::string files;
        std::getline(fields, c.input, '\t');
        std::getline(fields, c.outcome, '\t');
        std::getline(fields, files, '\t');
        std::istringstream list(files);
        for (std::string file; std::getline(list, file, ',');)
            if (file.find_first_not_of(' ') != std::string::npos)
                c.files.push_back(file.substr(file.find_first_not_of(' ')));
        cases.push_back(c);
    }
    return cases;
}

void RunTable(const std::string& name, std::size_t count) {
    const fs::path table = fs::path(RAVELO_TEST_DATA) / name;
    const std::vector<Case> cases = LoadCases(table);
    ASSERT_EQ(cases.size(), count) << name;
    for (const Case& c : cases) {
        SCOPED_TRACE(name + "/" + c.input);
        const fs::path expected = table / "expected" / c.input;
        const std::string bytes = test::ReadHostFile(table / c.input), path = "C:\\d\\" + c.input;
        const std::string ext = fs::path(c.input).extension().string();
        const bool typed = ext == ".out";
        test::TestProgram t(typed ? "text MOPAC.Text1 " + path + "\nclick MOPAC.Command1\n" : "", 0);
        t.Install();
        t.Write("C:\\ravelo\\mmatoms.dat", test::DemoAtomTable());
        t.Write(path, bytes);
        const int status = typed ? t.Run("", "MOPAC") : t.Run("fileconv " + path);
        if (c.outcome == "ends normally") {
            EXPECT_EQ(status, 0) << t.Output();
        } else {
            EXPECT_EQ(status, 3);
            EXPECT_NE(t.Output().find("Run-time error '" + c.outcome.substr(6) + "'"), std::string::npos)
                << c.outcome << "\n" << t.Output();
        }
        std::vector<std::string> left = t.program().fs.Dir("C:\\d\\*"), names, logs;
        bool inputGone = false;
        for (const std::string& file : c.files) {
            if (file == "input gone") {
                inputGone = true;
            } else if (file.starts_with("log ")) {
                logs.push_back(file.substr(4));
                EXPECT_EQ(test::ReadHostFile(t.Temp() / "Ravelo" / logs.back()),
                          test::ReadHostFile(expected / logs.back()))
                    << logs.back();
            } else {
                const std::string file_name = file.substr(0, file.find(' '));
                names.push_back(file_name);
                const std::string want = file.ends_with(" empty") ? "" : test::ReadHostFile(expected / file_name);
                EXPECT_TRUE(t.Exists("C:\\d\\" + file_name) && t.Read("C:\\d\\" + file_name) == want) << file_name;
            }
        }
        // Beside the input: exactly the listed files.
        const auto input = std::find(left.begin(), left.end(), c.input);
        ASSERT_EQ(input == left.end(), inputGone);
        if (!inputGone) left.erase(input);
        EXPECT_EQ(left, names);
        if (typed || ext == ".mm2") {
            EXPECT_TRUE(t.Read(path) == bytes);
        }
        const fs::path logFolder = t.Temp() / "Ravelo";
        for (const auto& log : fs::exists(logFolder) ? fs::directory_iterator(logFolder) : fs::directory_iterator()) {
            const std::string logName = log.path().filename().string();
            if (logName != "RaveloFilConvStat.Txt" && std::find(logs.begin(), logs.end(), logName) == logs.end()) {
                EXPECT_EQ(fs::file_size(log.path()), 0u) << logName;
            }
        }
    }
}

TEST(Cases, EachReadersEdgeCasesGiveTheirFiles) { RunTable("edge", 82); }

TEST(Cases, EachMalformedFileHasItsOneOutcome) { RunTable("bad", 64); }

}  // namespace
}  // namespace ravelo
