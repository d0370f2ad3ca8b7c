// The evaluator: the table tests/data/calc/evaluator.tsv of answers and
// passes, the pass that never ends, the trace and mode 1.
#include "calc/calculx.hpp"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <sstream>
#include <vector>

#include "support/error_of.hpp"
#include "support/test_program.hpp"

namespace ravelo {
namespace {

// A display that remembers every line the trace puts at the bottom.
class RecordingDisplay final : public CALCULX::Display {
public:
    std::string Line(int index) const override { return lines[static_cast<std::size_t>(index)]; }
    void SetLine(int index, std::string text) override {
        if (index == 4) bottom.push_back(text);
        lines[static_cast<std::size_t>(index)] = std::move(text);
    }
    void Repaint() override {}

    std::array<std::string, 5> lines;
    std::vector<std::string> bottom;
};

class Evaluator : public testing::Test {
protected:
    // Evaluates in mode 0 with the trace and its pauses on; returns the answer text.
    std::string Evaluate(const std::string& equation, std::optional<long> bound = std::nullopt) {
        shared.CurrentEquation = equation;
        display.bottom.clear();
        std::string text;
        CALCULX::EvaluateExpression(t.program(), shared, display, 0, text, history, bound);
        return text;
    }

    test::TestProgram t{"", 1};
    CALCULX::Shared shared{.CurrentEquation = {}, .LastAnswer = 0, .TraceFlag = "T"};
    RecordingDisplay display;
    CALCULX::History history;
};

TEST_F(Evaluator, AnswersAndPassesOfTheTable) {
    const auto rows = test::TableRows(std::filesystem::path(RAVELO_TEST_DATA) / "calc/evaluator.tsv");
    for (const auto& f : rows) {
        std::string answer;
        const int error = test::ErrorOf([&] { answer = Evaluate(f[0]); });
        EXPECT_EQ(error ? "!" + std::to_string(error) : answer, f[1]) << f[0];
        if (f.size() < 3 || f[2] != "*") {
            EXPECT_EQ(display.bottom, std::vector(f.begin() + 2, f.end())) << f[0];
        }
    }
    EXPECT_EQ(rows.size(), 36u);
    // The answer is read back from its text: ln 1000 / ln 10 is just below 3.
    Evaluate("(log(1000))");
    EXPECT_EQ(shared.LastAnswer, 3);
}

TEST_F(Evaluator, UnmatchedClosingBracketRepeatsItsPass) {
    // The pattern "(2+3)" is not in "2+3)", so nothing changes, pass after pass.
    EXPECT_THROW(Evaluate("2+3)", 50), CALCULX::StepBoundExceeded);
    EXPECT_EQ(shared.CurrentEquation, "2+3)");
    EXPECT_EQ(display.bottom, std::vector<std::string>(50, "2+3)"));
}

TEST_F(Evaluator, TraceScrollsEveryPassIntoTheDisplayWithItsPause) {
    display.lines = {"a", "b", "c", "d", "e"};
    Evaluate("2+3*(2+3)");
    // Four passes scrolled up, the answer on top, the lines between cleared,
    // and the equation's last form kept at the bottom.
    EXPECT_EQ(display.lines, (std::array<std::string, 5>{"The Answer is  25", "", "", "", "25"}));
    EXPECT_EQ(t.clock().millis, 4 * 2000u);
    // Without the trace only the answer lines change, and nothing waits.
    shared.TraceFlag = "F";
    Evaluate("1/2");
    EXPECT_EQ(display.lines, (std::array<std::string, 5>{"The Answer is  .5", "", "", "", "25"}));
    EXPECT_EQ(t.clock().millis, 8000u);
}

TEST_F(Evaluator, ModeOneTakesTheEquationFromTheText) {
    display.lines = {"a", "b", "c", "d", "e"};
    std::string text = "3*PI";
    CALCULX::EvaluateExpression(t.program(), shared, display, 1, text, history);
    EXPECT_EQ(text, " 9.42477796077");
    EXPECT_EQ(history[0], "3*pi");
    // The value is read back from the last equation text.
    EXPECT_EQ(shared.LastAnswer, 9.42477796077);
    // Traced as in mode 0, but no answer line.
    EXPECT_EQ(display.lines, (std::array<std::string, 5>{"c", "d", "e", "9.42477796077", "9.42477796077"}));

    // Nothing at all without a leading number, or with fewer than 3 characters.
    for (std::string ignored : {"a+3", "5+"}) {
        const std::string before = ignored;
        CALCULX::EvaluateExpression(t.program(), shared, display, 1, ignored, history);
        EXPECT_EQ(ignored, before);
        EXPECT_EQ(history[0], "3*pi");
        EXPECT_EQ(shared.LastAnswer, 9.42477796077);
    }
}

TEST(ReduceStep, FlagSaysWhetherAnotherPassIsDue) {
    std::string equation = "2-(1-4)";
    double result = 0;
    int flag = -1;
    CALCULX::ReduceStep("1-4)", equation, result, flag);
    EXPECT_EQ(equation, "2--3");
    EXPECT_EQ(result, -3);
    EXPECT_EQ(flag, 2);  // the operation's position in the segment

    equation = "(5";
    CALCULX::ReduceStep("5", equation, result, flag);
    EXPECT_EQ(equation, "(5");
    EXPECT_EQ(result, 5);
    EXPECT_EQ(flag, 0);
}

}  // namespace
}  // namespace ravelo
