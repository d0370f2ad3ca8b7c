// Malformed input for every reader (cut short, missing sections, random
// bytes, numbers beyond every range, a line of 100,000 digits), converted by
// the program as a user converts it: "fileconv" on the file, or a MOPAC
// listing typed into its window. tests/data/bad/EXPECTED.tsv gives each
// file's one outcome ("ends normally" or "error N") and every file the
// program leaves beside the input: its expected bytes in
// tests/data/bad/expected, or "empty" (an error puts the files open at that
// moment in place as they stand). The input always stays, and a file that is
// read without cleaning stays as it was.
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
const fs::path kBad = fs::path(RAVELO_TEST_DATA) / "bad";

struct BadCase {
    std::string input, outcome;
    std::vector<std::string> outputs;  // "NAME" (bytes in expected/NAME) or "NAME empty"
};

std::vector<BadCase> LoadCases() {
    std::vector<BadCase> cases;
    std::istringstream lines(test::ReadHostFile(kBad / "EXPECTED.tsv"));
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        BadCase c;
        std::getline(fields, c.input, '\t');
        std::getline(fields, c.outcome, '\t');
        for (std::string output; std::getline(fields, output, ',');)
            c.outputs.push_back(output.substr(output.find_first_not_of(' ')));
        cases.push_back(c);
    }
    return cases;
}

TEST(BadInput, EachFileHasItsOneOutcome) {
    const std::vector<BadCase> cases = LoadCases();
    ASSERT_EQ(cases.size(), 64u);
    for (const BadCase& c : cases) {
        const std::string bytes = test::ReadHostFile(kBad / c.input), path = "C:\\d\\" + c.input;
        const std::string ext = fs::path(c.input).extension().string();
        const bool typed = ext == ".out";
        test::TestProgram t(typed ? "text MOPAC.Text1 " + path + "\nclick MOPAC.Command1\n" : "", 0);
        t.Install();
        t.Write("C:\\ravelo\\mmatoms.dat", test::DemoAtomTable());
        t.Write(path, bytes);
        const int status = typed ? t.Run("", "MOPAC") : t.Run("fileconv " + path);
        if (c.outcome == "ends normally") {
            EXPECT_EQ(status, 0) << c.input << "\n" << t.Output();
        } else {
            EXPECT_EQ(status, 3) << c.input;
            EXPECT_NE(t.Output().find("Run-time error '" + c.outcome.substr(6) + "'"), std::string::npos)
                << c.input << ": " << c.outcome << "\n" << t.Output();
        }
        // Beside the input: exactly the listed files.
        std::vector<std::string> left = t.program().fs.Dir("C:\\d\\*");
        ASSERT_NE(std::find(left.begin(), left.end(), c.input), left.end()) << c.input;
        left.erase(std::find(left.begin(), left.end(), c.input));
        std::vector<std::string> names;
        for (const std::string& output : c.outputs) {
            const std::string name = output.substr(0, output.find(' '));
            names.push_back(name);
            const std::string want = output.ends_with(" empty") ? "" : test::ReadHostFile(kBad / "expected" / name);
            EXPECT_TRUE(t.Exists("C:\\d\\" + name) && t.Read("C:\\d\\" + name) == want) << c.input << " " << name;
        }
        EXPECT_EQ(left, names) << c.input;
        if (typed || ext == ".mm2") {
            EXPECT_TRUE(t.Read(path) == bytes) << c.input;
        }
    }
}

}  // namespace
}  // namespace ravelo
