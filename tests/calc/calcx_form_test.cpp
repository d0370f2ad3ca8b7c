// The calculator window driven through the script host, as "calculx" opens
// it: the worked answers of the golden table, the preconditions of
// Calculate, the history, the buttons, the trace and the two dialogues.
#include "calc/calcx_form.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "support/test_program.hpp"

namespace ravelo {
namespace {

using test::TestProgram;

// Every "dump CalcxForm" of a run's output, in order.
std::vector<std::string> Dumps(const std::string& out) {
    std::vector<std::string> dumps;
    std::size_t start = 0;
    for (std::size_t end; (end = out.find("END\n", start)) != std::string::npos; start = end + 4)
        dumps.push_back(out.substr(start, end - start));
    return dumps;
}

// A control's line of a dump without its name: "V<TAB>COLOUR<TAB>TEXT".
std::string Row(const std::string& dump, const std::string& control) {
    const std::string key = "CalcxForm." + control + "\t";
    const std::size_t at = dump.find(key);
    if (at == std::string::npos) return "(missing)";
    const std::size_t from = at + key.size();
    return dump.substr(from, dump.find('\n', from) - from);
}

// The texts a dump shows for the controls, joined by "|".
std::string Text(const std::string& dump, std::initializer_list<const char*> controls) {
    std::string texts;
    for (const char* control : controls) {
        const std::string row = Row(dump, control);
        texts += "|" + row.substr(row.find('\t', row.find('\t') + 1) + 1);
    }
    return texts.substr(1);
}

// Runs "calculx" with a script (no pauses) and returns its dumps.
std::vector<std::string> RunCalculator(const std::string& script, std::size_t dumps, int expectedStatus = 0) {
    TestProgram t(script, 0);
    t.Install();
    EXPECT_EQ(t.Run("calculx"), expectedStatus);
    auto found = Dumps(t.Output());
    EXPECT_EQ(found.size(), dumps) << t.Output();
    found.resize(std::max(found.size(), dumps));
    return found;
}

// Label13 after typing `typed` and clicking Calculate; the version line
// stands in Label13 before, so an equation not calculated leaves it there.
std::string AnswerLine(const std::string& typed, const std::string& variableAnswer = {}) {
    return Text(RunCalculator("click CalcxForm.Label1\ntext CalcxForm.Text1 " + typed +
                                  "\nclick CalcxForm.Command1\ntext CalcxForm.Text2 " + variableAnswer +
                                  "\nclick CalcxForm.Command2\ndump CalcxForm\n",
                              1)[0],
                {"Label13"});
}

TEST(CalcxForm, GoldenAnswersAndEquationsCalculateNeedsADigitBeforeTheLastTwoCharacters) {
    std::istringstream table(
        test::ReadHostFile(std::filesystem::path(RAVELO_TEST_DATA) / "calc/calculator.tsv"));
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.empty() || line[0] == '#') continue;
        const std::string typed = line.substr(0, line.find('\t'));
        const std::string expected = line.substr(line.find('\t') + 1);
        EXPECT_EQ(AnswerLine(typed), expected == "-" ? VersionLine() : expected) << typed;
        ++rows;
    }
    EXPECT_EQ(rows, 13);
    EXPECT_EQ(AnswerLine("2*va", "3"), "The Answer is  6");
    EXPECT_EQ(AnswerLine("  5+1  "), "The Answer is  6");  // trimmed first
    for (const char* ignored : {"va*2", "12", "0+5", "x+12", "0*(5)"}) EXPECT_EQ(AnswerLine(ignored), VersionLine());
}

TEST(CalcxForm, StartShowsTheDesignedControls) {
    EXPECT_EQ(
        RunCalculator("dump CalcxForm\n", 1)[0],
        "CalcxForm.Label1\t1\tFF00FF\tThe Scientific Calculator and Math Expression Evaluator\n"
        "CalcxForm.Label2\t1\tFF0000\tpi  ( )  ^  *  /  +  -  sin  tan  cos  atn  log\n"
        "CalcxForm.Label3\t1\tFFFF00\tStore Value\nCalcxForm.Label4\t0\tFFFF00\tStore Equation\n"
        "CalcxForm.Label5\t1\tFFFF00\tHelp\nCalcxForm.Label6\t1\tFFFF00\tRecall Value\n"
        "CalcxForm.Label7\t1\tFFFF00\tRecall Equation\nCalcxForm.Label8\t1\tFFFF00\tClear\n"
        "CalcxForm.Label9\t1\tFF0000\tEXIT\nCalcxForm.Label10\t1\tFFFF00\tTrace\n"
        "CalcxForm.Label11\t1\t-\tMath Equation\nCalcxForm.Label12\t0\t-\t\n"
        "CalcxForm.Label13\t1\t-\t\nCalcxForm.Label14\t1\t-\t\nCalcxForm.Label15\t1\t-\t\n"
        "CalcxForm.Label16\t1\t-\t\nCalcxForm.Label17\t1\t-\t\nCalcxForm.Text1\t1\t-\t\n"
        "CalcxForm.Text2\t0\t-\t\nCalcxForm.Command1\t1\t-\tCalculate\nCalcxForm.Command2\t0\t-\tAccept\n"
        "CalcxForm.List1\t0\t-\t\n");
}

TEST(CalcxForm, EnterCalculatesInLowerCaseAndOffersStoreEquationUntilAnEdit) {
    const auto dumps = RunCalculator(
        "text CalcxForm.Text1 2*(SIN(30))\nkey CalcxForm.Text1 13\ndump CalcxForm\n"
        "text CalcxForm.Text1 2*(SIN(30))+1\ndump CalcxForm\n",
        2);
    EXPECT_EQ(Text(dumps[0], {"Label13", "Text1"}), "The Answer is  1.00000000000006|2*(sin(30))");
    EXPECT_EQ(Row(dumps[0], "Label4"), "1\tFFFF00\tStore Equation");
    EXPECT_EQ(Row(dumps[1], "Label4"), "0\tFFFF00\tStore Equation");
}

TEST(CalcxForm, HistoryKeepsTenStoredEquationsAndWraps) {
    std::string script;
    for (int k = 1; k <= 11; ++k) {
        script += "text CalcxForm.Text1 1+" + std::to_string(k) + "\nclick CalcxForm.Command1\nclick CalcxForm.Label4\n";
        if (k == 1) script += "dump CalcxForm\n";
    }
    const auto dumps = RunCalculator(script + "dump CalcxForm\n", 2);
    // Always eleven lines, the last calculated equation first.
    EXPECT_EQ(Text(dumps[0], {"List1"}), "1+1|1+1|||||||||");
    EXPECT_EQ(Text(dumps[1], {"List1"}), "1+11|1+11|1+2|1+3|1+4|1+5|1+6|1+7|1+8|1+9|1+10");
}

TEST(CalcxForm, DisplayButtons) {
    const auto dumps = RunCalculator(
        "click CalcxForm.Label6\ndump CalcxForm\n"                                      // nothing stored yet
        "text CalcxForm.Text1 1/2\nclick CalcxForm.Command1\nclick CalcxForm.Label3\n"  // store .5
        "text CalcxForm.Text1 2+3*5\nclick CalcxForm.Command1\nclick CalcxForm.Label6\ndump CalcxForm\n"
        "click CalcxForm.Label5\ndump CalcxForm\nclick CalcxForm.Label1\ndump CalcxForm\n"
        "click CalcxForm\ndump CalcxForm\n"
        "text CalcxForm.Text1 7*7\nclick CalcxForm.Command1\nclick CalcxForm.Label8\ndump CalcxForm\n",
        6);
    EXPECT_EQ(Text(dumps[0], {"Label13"}), " 0");
    EXPECT_EQ(Text(dumps[1], {"Label13"}), " .5");
    EXPECT_EQ(Text(dumps[2], {"Label13", "Label16"}),
              "The mathematical expression to be evaluated must be explicitly delimited by using brackets|"
              "where '?' is any single alphanumeric character.");
    EXPECT_EQ(Row(dumps[2], "Label5"), "1\tFF0000\tHelp");  // help stays light red
    EXPECT_EQ(Text(dumps[3], {"Label13", "Label14"}),
              VersionLine() +
                  "|to enclose each discrete group of operations. Trigonometric and logarithmic functions should");
    EXPECT_EQ(Text(dumps[4], {"Label13", "Label14", "Label15", "Label16", "Label17"}), "||||");  // background
    EXPECT_EQ(Text(dumps[5], {"Label13", "Text1"}), "|");
    EXPECT_EQ(Row(dumps[5], "Label4"), "0\tFFFF00\tStore Equation");
}

TEST(CalcxForm, LabelsFlashForAQuarterSecondWithoutTakingEvents) {
    TestProgram t("click CalcxForm.Label3\nclick CalcxForm.Label5\ndump CalcxForm\n", 1);
    t.Install();
    EXPECT_EQ(t.Run("calculx"), 0);
    // More than 0.25 s in 10 ms steps, twice; the script went on only after.
    EXPECT_EQ(t.clock().millis, 2 * 260u);
    EXPECT_NE(t.Output().find("CalcxForm.Label3\t1\tFFFF00\tStore Value\n"), std::string::npos);
}

TEST(CalcxForm, TraceKeepsTheLastFormAtTheBottom) {
    const auto dumps = RunCalculator(
        "click CalcxForm.Label10\ntext CalcxForm.Text1 2+3*(2+3)\nclick CalcxForm.Command1\ndump CalcxForm\n"
        "click CalcxForm.Label10\ntext CalcxForm.Text1 1+1+1\nclick CalcxForm.Command1\ndump CalcxForm\n",
        2);
    EXPECT_EQ(Row(dumps[0], "Label10"), "1\tFF0000\tTrace");
    EXPECT_EQ(Text(dumps[0], {"Label13", "Label16", "Label17"}), "The Answer is  25||25");
    EXPECT_EQ(Row(dumps[1], "Label10"), "1\tFFFF00\tTrace");
    EXPECT_EQ(Text(dumps[1], {"Label13", "Label17"}), "The Answer is  3|25");
}

TEST(CalcxForm, RecalledEquationIsEditedPieceByPiece) {
    const auto dumps = RunCalculator(
        "text CalcxForm.Text1 2+3*5\nclick CalcxForm.Command1\nclick CalcxForm.Label4\n"
        "text CalcxForm.Text1 9\nclick CalcxForm.Label7\ndump CalcxForm\n"
        "pick CalcxForm.List1 5\npick CalcxForm.List1 1\ndump CalcxForm\n"  // an empty line is no pick
        "text CalcxForm.Text2 3\nclick CalcxForm.Command2\ndump CalcxForm\n"
        "text CalcxForm.Text2 4\nclick CalcxForm.Command2\ndump CalcxForm\n"
        "text CalcxForm.Text2 +\nclick CalcxForm.Command2\nclick CalcxForm.Command2\n"  // "+" with nothing
        "click CalcxForm.Command2\ndump CalcxForm\n"                                    // done
        "click CalcxForm.Command1\ndump CalcxForm\n",
        6);
    EXPECT_EQ(Row(dumps[0], "List1"), "1\t-\t2+3*5|2+3*5|||||||||");
    EXPECT_EQ(Text(dumps[0], {"Label13"}), "");
    EXPECT_EQ(Row(dumps[1], "List1").substr(0, 1), "0");
    EXPECT_EQ(Row(dumps[1], "Label12"), "1\t-\tWhich entity in equation to replace");
    EXPECT_EQ(Text(dumps[1], {"Text1"}), "2+3*5");
    EXPECT_EQ(Text(dumps[2], {"Label12"}), "Replace 3 with");
    EXPECT_EQ(Text(dumps[3], {"Text1", "Label12"}), "2+4*5|Which entity in equation to replace");
    EXPECT_EQ(Row(dumps[4], "Label12") + Row(dumps[4], "Text2"), "0\t-\t0\t-\t");
    EXPECT_EQ(Row(dumps[4], "Command2").substr(0, 1), "0");
    EXPECT_EQ(Text(dumps[4], {"Text1", "Label13"}), "2+4*5|");  // not calculated by the dialogue
    EXPECT_EQ(Text(dumps[5], {"Label13"}), "The Answer is  30");
}

TEST(CalcxForm, RecallWaitsAMinuteAtMostAndNeedsAnEquation) {
    // No equation yet: nothing opens and nothing waits.
    TestProgram none("click CalcxForm.Label7\ndump CalcxForm\n", 0);
    none.Install();
    none.Run("calculx");
    EXPECT_NE(none.Output().find("CalcxForm.List1\t0\t"), std::string::npos);
    EXPECT_EQ(none.clock().millis, 0u);

    // Nothing picked: the list goes after more than 60 s, scale or not.
    TestProgram idle("text CalcxForm.Text1 1+1\nclick CalcxForm.Command1\nclick CalcxForm.Label7\n", 0);
    idle.Install();
    idle.Run("calculx");
    EXPECT_EQ(idle.clock().millis, 60010u);
    EXPECT_FALSE(idle.program().Window("CalcxForm")["List1"].Visible());
    EXPECT_FALSE(idle.program().Window("CalcxForm")["Label12"].Visible());
}

TEST(CalcxForm, VariablesAreAskedForOneByOne) {
    const auto dumps = RunCalculator(
        "text CalcxForm.Text1 2*VA+vb\nclick CalcxForm.Command1\ndump CalcxForm\n"
        "text CalcxForm.Text2 3\nclick CalcxForm.Command2\ndump CalcxForm\n"
        "click CalcxForm.Command2\ndump CalcxForm\n"  // no answer stands for " 0"
        "click CalcxForm.Label4\nclick CalcxForm.Label7\npick CalcxForm.List1 0\n"
        "text CalcxForm.Text2 5\nclick CalcxForm.Command2\ndump CalcxForm\n",
        4);
    EXPECT_EQ(Row(dumps[0], "Label12"), "1\t-\tReplace variable va with");
    EXPECT_EQ(Text(dumps[0], {"Text1"}), "2*va+vb");
    EXPECT_EQ(Text(dumps[1], {"Label12", "Text1"}), "Replace variable vb with|2*3+vb");
    EXPECT_EQ(Text(dumps[2], {"Text1", "Label13"}), "2*3+ 0|The Answer is  6");
    EXPECT_EQ(Row(dumps[2], "Text2"), "0\t-\t");
    // A recalled equation with a variable: asked for, substituted, not calculated.
    EXPECT_EQ(Text(dumps[3], {"Text1", "Label12", "Label13"}), "2*5+vb|Replace variable vb with|");
}

TEST(CalcxForm, ExitAndRunTimeErrorsEndTheCalculator) {
    TestProgram exited("click CalcxForm.Label9\ndump CalcxForm\n", 0);
    exited.Install();
    EXPECT_EQ(exited.Run("calculx"), 0);
    EXPECT_EQ(exited.Output(), "");  // the window was gone before the dump

    TestProgram failed("text CalcxForm.Text1 1/0\nclick CalcxForm.Command1\ndump CalcxForm\n", 0);
    failed.Install();
    EXPECT_EQ(failed.Run("calculx"), 3);
    EXPECT_EQ(failed.Output(), "MSGBOX RaveloUtils|Run-time error '11':\\n\\nDivision by zero\n");
}

}  // namespace
}  // namespace ravelo
