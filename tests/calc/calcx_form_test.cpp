// The calculator window driven through the script host, as "calculx" opens it:
// the answers of tests/data/calc/calculator.tsv, recorded runs, waits and ends.
#include "calc/calcx_form.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "support/test_program.hpp"

namespace ravelo {
namespace {

const std::filesystem::path kData = std::filesystem::path(RAVELO_TEST_DATA) / "calc";

// A run of "calculx" with a script, its program kept for a look after.
struct Calc {
    explicit Calc(const std::string& script, double waitScale = 0) : t(script, waitScale) {
        t.Install();
        status = t.Run("calculx");
    }
    test::TestProgram t;
    int status;
};

// Label13 after typing `typed` and clicking Calculate; the version line
// stands in Label13 before, so an equation not calculated leaves it there.
std::string AnswerLine(const std::string& typed, const std::string& variableAnswer) {
    Calc c("click CalcxForm.Label1\ntext CalcxForm.Text1 " + typed + "\nclick CalcxForm.Command1\n" +
           "text CalcxForm.Text2 " + variableAnswer + "\nclick CalcxForm.Command2\ndump CalcxForm\n");
    EXPECT_EQ(c.status, 0);
    const std::string out = c.t.Output(), key = "\nCalcxForm.Label13\t1\t-\t";
    const std::size_t at = out.find(key), from = at + key.size();
    return at == std::string::npos ? "(missing)" : out.substr(from, out.find('\n', from) - from);
}

TEST(CalcxForm, GoldenAnswersAndEquationsCalculateNeedsADigitBeforeTheLastTwoCharacters) {
    const auto rows = test::TableRows(kData / "calculator.tsv");
    for (const auto& f : rows) {
        EXPECT_EQ(AnswerLine(f[0], f.size() > 2 ? f[2] : ""), f[1] == "-" ? VersionLine() : f[1]) << f[0];
    }
    EXPECT_EQ(rows.size(), 20u);
}

// Each runs/NAME.script (its comments say what it shows) prints runs/NAME.out,
// with @VERSIONLINE@ for the version line: every dump whole.
TEST(CalcxForm, RecordedRunsPrintTheirDumps) {
    for (const std::string run :
         {"start", "enter", "history", "buttons", "trace", "recall", "variables", "exit"}) {
        Calc c(test::ReadHostFile(kData / "runs" / (run + ".script")));
        std::string expected = test::ReadHostFile(kData / "runs" / (run + ".out"));
        for (std::size_t at; (at = expected.find("@VERSIONLINE@")) != std::string::npos;)
            expected.replace(at, 13, VersionLine());
        EXPECT_EQ(c.status, 0) << run;
        EXPECT_EQ(c.t.Output(), expected) << run;
    }
}

TEST(CalcxForm, LabelsFlashForAQuarterSecondWithoutTakingEvents) {
    Calc c("click CalcxForm.Label3\nclick CalcxForm.Label5\ndump CalcxForm\n", 1);
    // More than 0.25 s in 10 ms steps, twice; the script went on only after.
    EXPECT_EQ(c.t.clock().millis, 2 * 260u);
    EXPECT_NE(c.t.Output().find("CalcxForm.Label3\t1\tFFFF00\tStore Value\n"), std::string::npos);
}

TEST(CalcxForm, RecallWaitsAMinuteAtMostAndNeedsAnEquation) {
    Calc none("click CalcxForm.Label7\ndump CalcxForm\n");  // no equation: nothing opens or waits
    EXPECT_NE(none.t.Output().find("CalcxForm.List1\t0\t"), std::string::npos);
    EXPECT_EQ(none.t.clock().millis, 0u);
    // Nothing picked: the list goes after more than 60 s, scale or not.
    Calc idle("text CalcxForm.Text1 1+1\nclick CalcxForm.Command1\nclick CalcxForm.Label7\n");
    EXPECT_EQ(idle.t.clock().millis, 60010u);
    EXPECT_FALSE(idle.t.program().Window("CalcxForm")["List1"].Visible());
    EXPECT_FALSE(idle.t.program().Window("CalcxForm")["Label12"].Visible());
}

TEST(CalcxForm, RunTimeErrorEndsTheCalculator) {
    Calc failed("text CalcxForm.Text1 1/0\nclick CalcxForm.Command1\ndump CalcxForm\n");
    EXPECT_EQ(failed.status, 3);
    EXPECT_EQ(failed.t.Output(), "MSGBOX RaveloUtils|Run-time error '11':\\n\\nDivision by zero\n");
}

}  // namespace
}  // namespace ravelo
