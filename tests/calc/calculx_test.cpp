// The evaluator: every pass's rewritten equation, exponents, signs, nested
// brackets, functions in degrees with the calculator's own pi, the faults,
// and the pass that never ends. Expected texts are worked out from the
// rewriting rules; the values of the functions from pi = 3.14159265359.
#include "calc/calculx.hpp"

#include <gtest/gtest.h>

#include <array>
#include <tuple>
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
    // Evaluates in mode 0 with the trace on; returns the answer text.
    std::string Evaluate(const std::string& equation, std::optional<long> bound = std::nullopt) {
        shared.CurrentEquation = equation;
        display.bottom.clear();
        std::string text;
        CALCULX::EvaluateExpression(t.program(), shared, display, 0, text, history, bound);
        return text;
    }

    test::TestProgram t{"", 0};
    CALCULX::Shared shared{.CurrentEquation = {}, .LastAnswer = 0, .TraceFlag = "T"};
    RecordingDisplay display;
    CALCULX::History history;
};

TEST_F(Evaluator, EachPassRewritesTheFirstOperationOfTheInnermostBracket) {
    const std::tuple<const char*, std::vector<std::string>, const char*> cases[] = {
        // Left to right, no precedence; the last pass finds the equation finished.
        {"2+3*5", {"5*5", "25", "25"}, " 25"}, {"2+3*(2+3)", {"2+3*5", "5*5", "25", "25"}, " 25"},
        // A bracket around a bare number goes; sin 30 is not quite one half.
        {"2*(sin(30))", {"2*(sin30)", "2*.50000000000003", "1.00000000000006", "1.00000000000006"},
         " 1.00000000000006"},
        // Negative intermediate values keep their sign and are read back.
        {"2-(1-4)", {"2--3", "5", "5"}, " 5"}, {"(1-4)*2", {"-3*2", "-6", "-6"}, "-6"},
        {"((2+3)*(4-1))", {"((2+3)*3)", "(5*3)", "15", "15"}, " 15"},
        // The first "3*2" of the equation is replaced, not the bracket's:
        // 23*2 loses its "3*2" to a 6.
        {"23*2*(3*2+1)", {"26*(3*2+1)", "26*(6+1)", "26*7", "182", "182"}, " 182"},
        // A function without its own bracket: the right operand ends at "i".
        {"2*sin(30)", {"2*sin30", "0in30", "0in30"}, " 0"},
        {"(2+3", {"(5", "(5"}, " 5"},  // a missing closing bracket is tolerated
        // The fragment "nta" is matched but not computed: it keeps the last result.
        {"(2*3)nta5", {"6nta5", "66", "66"}, " 66"}, {"pi+pi", {"6.28318530718", "6.28318530718"}, " 6.28318530718"},
        // Signs after D or E belong to exponents.
        {"1e-5+1", {"1.00001", "1.00001"}, " 1.00001"}, {"2*1e-5", {"2E-05", "2E-05"}, " 2E-05"},
        {"3+2e-5*2", {"3.00002*2", "6.00004", "6.00004"}, " 6.00004"}, {"5d+2*2", {"1000", "1000"}, " 1000"},
        // The exponent test of the operation search reads the whole
        // equation: the "e" of "1e2" hides the minus inside the bracket, so
        // (10-3) reads as the bare number 10.
        {"1e2*(10-3)", {"1e2*10", "1000", "1000"}, " 1000"},
        {"1+2e+", {"3+", "3", "3"}, " 3"},  // a right operand ending in an exponent's sign stops before it
        // Short equations are their leading number, without a pass.
        {"7", {}, " 7"}, {"-5", {}, "-5"}, {"ab", {}, " 0"},
        // The kept result starts at zero in each evaluation.
        {"nta5", {"0", "0"}, " 0"},
    };
    for (const auto& [equation, passes, answer] : cases) {
        EXPECT_EQ(Evaluate(equation), answer) << equation;
        EXPECT_EQ(display.bottom, passes) << equation;
    }
}

TEST_F(Evaluator, FunctionsWorkInDegreesWithTheirOwnPi) {
    EXPECT_EQ(Evaluate("(atn(1))"), " 44.999999999997");
    EXPECT_EQ(Evaluate("(cos(60))"), " .49999999999994");
    EXPECT_EQ(Evaluate("(tan(45))"), " 1.0000000000001");
    EXPECT_EQ(Evaluate("log(100)"), " 2");
    // ln 1000 / ln 10 is just below 3, but its text is 3, and the answer
    // is read back from the text.
    EXPECT_EQ(Evaluate("(log(1000))"), " 3");
    EXPECT_EQ(shared.LastAnswer, 3);
    // tan 90 is taken just below 90: large and positive. 270 is not adjusted.
    EXPECT_EQ(Evaluate("(tan(90))"), " 14017862860417.9");
    EXPECT_EQ(Evaluate("(tan(270))"), "-3227987202133.87");
}

TEST_F(Evaluator, ArithmeticFaultsEndInTheirRunTimeErrors) {
    const std::pair<const char*, int> cases[] = {
        {"1/0", 11},     {"0/0", 6},        {"0^-1", 11},       {"(0-2)^.5", 5},
        {"(log(0))", 5}, {"(log(0-1))", 5}, {"1e300*1e300", 6}, {"1e999+1", 6},
    };
    for (const auto& [equation, number] : cases)
        EXPECT_EQ(test::ErrorOf([&] { Evaluate(equation); }), number) << equation;
}

TEST_F(Evaluator, UnmatchedClosingBracketRepeatsItsPass) {
    // The pattern "(2+3)" is not in "2+3)", so nothing changes, pass after pass.
    EXPECT_THROW(Evaluate("2+3)", 50), CALCULX::StepBoundExceeded);
    EXPECT_EQ(shared.CurrentEquation, "2+3)");
    EXPECT_EQ(display.bottom, std::vector<std::string>(50, "2+3)"));
}

TEST_F(Evaluator, TraceScrollsEveryPassIntoTheDisplayWithItsPause) {
    test::TestProgram slow("", 1);
    display.lines = {"a", "b", "c", "d", "e"};
    std::string text;
    shared.CurrentEquation = "2+3*(2+3)";
    CALCULX::EvaluateExpression(slow.program(), shared, display, 0, text, history);
    // Four passes scrolled up, then the answer on top, the lines between
    // cleared, and the equation's last form kept at the bottom.
    EXPECT_EQ(display.lines, (std::array<std::string, 5>{"The Answer is  25", "", "", "", "25"}));
    EXPECT_EQ(slow.clock().millis, 4 * 2000u);

    // Without the trace only the answer lines change, and nothing waits.
    shared.TraceFlag = "F";
    shared.CurrentEquation = "1/2";
    CALCULX::EvaluateExpression(slow.program(), shared, display, 0, text, history);
    EXPECT_EQ(display.lines, (std::array<std::string, 5>{"The Answer is  .5", "", "", "", "25"}));
    EXPECT_EQ(slow.clock().millis, 8000u);
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
