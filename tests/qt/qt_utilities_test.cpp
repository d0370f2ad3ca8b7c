// The utilities' windows on the desktop host: the calculator, the molecule
// log copier and the database transfer, worked through their widgets. Where
// a utility writes files, the same clicks given to the script host must
// leave the same files.
#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <map>

#include "qt/qt_program.hpp"

namespace ravelo {
namespace {

using test::Click;
using test::ColourAt;
using test::QtProgram;
using test::SaveScreenshot;

QString Q(const std::string& text) { return QString::fromStdString(text); }

// Relative path -> bytes of every file under a folder of drive C.
std::map<std::string, std::string> FilesUnder(const std::filesystem::path& root) {
    std::map<std::string, std::string> files;
    if (!std::filesystem::exists(root)) return files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
        if (entry.is_regular_file())
            files[relative(entry.path(), root).generic_string()] = test::ReadHostFile(entry.path());
    return files;
}

// The demo drive run through the script host with `script`.
struct ScriptedRun {
    ScriptedRun(const std::string& script, const std::string& commandLine, const std::string& window = {})
        : program(script, 0) {
        program.Install();
        std::filesystem::copy(
            RAVELO_DEMO_DRIVE, program.DriveC(),
            std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
        program.Run(commandLine, window);
    }
    test::TestProgram program;
};

// A point of a label's background: inside its frame, left of its caption.
QPoint Margin(QWidget* label) { return {5, label->height() / 2}; }

// Types an equation into the calculator and presses Enter.
void Calculate(QtProgram& t, const QString& equation) {
    QLineEdit* box = t.TextBox("CalcxForm", "Text1");
    ASSERT_NE(box, nullptr);
    box->setFocus();
    QTest::keyClicks(box, equation);
    QTest::keyClick(box, Qt::Key_Return);
}

TEST(QtCalculator, EnterCalculatesAndTheAnswerShowsInTheDisplay) {
    QtProgram t;
    t.Install();
    if (!t.program().HasWindow("CalcxForm")) GTEST_SKIP() << "no calculator in this build";
    ASSERT_EQ(t.Start("", "CalcxForm"), std::nullopt);
    t.Settle();
    QWidget* window = t.Window("CalcxForm");
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("The Calculator"));
    // The title in light magenta, the operator line in light red.
    for (const auto& [label, colour] :
         {std::pair{"Label1", QColor(0xFF, 0x00, 0xFF)}, {"Label2", QColor(0xFF, 0, 0)}})
        EXPECT_EQ(ColourAt(t.Label("CalcxForm", label), Margin(t.Label("CalcxForm", label))), colour)
            << label;
    EXPECT_FALSE(t.Label("CalcxForm", "Label4")->isVisible());  // nothing to store yet

    Calculate(t, QStringLiteral("2*(3+4)"));
    QLabel* answer = t.Label("CalcxForm", "Label13");
    EXPECT_TRUE(answer->isVisible());
    EXPECT_EQ(answer->text(), Q(t.Model("CalcxForm", "Label13").Caption()));
    EXPECT_TRUE(answer->text().contains(QStringLiteral("14"))) << answer->text().toStdString();  // 2*7
    EXPECT_TRUE(t.Label("CalcxForm", "Label4")->isVisible());  // Store Equation
    t.Settle();
    test::ExpectNothingCut(window);
    SaveScreenshot(window, "CalcxForm");

    // The help text's long lines wrap inside the window.
    Click(t.Label("CalcxForm", "Label5"));
    for (const char* line : {"Label13", "Label14", "Label15", "Label16"})
        EXPECT_EQ(t.Label("CalcxForm", line)->text(), Q(t.Model("CalcxForm", line).Caption())) << line;
    t.Settle();
    test::ExpectNothingCut(window);
    SaveScreenshot(window, "CalcxForm-help");
}

TEST(QtCalculator, ClickedLabelsFlashWhileTheProgramWaits) {
    QtProgram t;
    t.Install();
    if (!t.program().HasWindow("CalcxForm")) GTEST_SKIP() << "no calculator in this build";
    ASSERT_EQ(t.Start("", "CalcxForm"), std::nullopt);
    t.Settle();
    QLabel* store = t.Label("CalcxForm", "Label3");
    const QPoint inside = Margin(store);
    EXPECT_EQ(ColourAt(store, inside), QColor(0xFF, 0xFF, 0x00));
    // The pause is a busy wait that processes no events: what the clock sees
    // on each of its turns is what the user sees.
    std::vector<QColor> during;
    t.clock().onIdle = [&] { during.push_back(ColourAt(store, inside)); };
    Click(store);
    t.clock().onIdle = nullptr;
    ASSERT_FALSE(during.empty());
    for (const QColor& colour : during) EXPECT_EQ(colour, QColor(0xFF, 0x00, 0x00));
    EXPECT_EQ(ColourAt(store, inside), QColor(0xFF, 0xFF, 0x00));
}

TEST(QtCalculator, MenuOpensItModalAndExitEndsItsLoop) {
    QtProgram t;
    t.Install();
    if (!t.program().HasWindow("CalcxForm")) GTEST_SKIP() << "no calculator in this build";
    ASSERT_EQ(t.Start(""), std::nullopt);
    test::WhenReady inside(
        [&] { return t.Window("CalcxForm") && t.Window("CalcxForm")->isVisible(); },
        [&] {
            EXPECT_EQ(t.Window("CalcxForm")->windowModality(), Qt::ApplicationModal);
            Calculate(t, QStringLiteral("3*(2+5)"));
            EXPECT_TRUE(t.Label("CalcxForm", "Label13")->text().contains(QStringLiteral("21")));  // 3*7
            Click(t.Label("CalcxForm", "Label9"));                                                // EXIT
        });
    Click(t.Label("RaveloUtils", "Label3"));  // Calculx; returns when the calculator closes
    EXPECT_TRUE(inside.Seen());
    EXPECT_FALSE(t.program().Window("CalcxForm").Loaded());
    EXPECT_FALSE(t.Window("CalcxForm")->isVisible());
    EXPECT_TRUE(t.Window("RaveloUtils")->isVisible());
}

TEST(QtMoleculeLog, LabelsRunTheirCopies) {
    QtProgram t;
    t.InstallDemo();
    if (!t.program().HasWindow("LogHtmForm1")) GTEST_SKIP() << "no molecule log copier in this build";
    ASSERT_EQ(t.Start("logtohtm"), std::nullopt);
    t.Settle();
    QWidget* window = t.Window("LogHtmForm1");
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(t.Label("LogHtmForm1", "Label2")->text(), QStringLiteral("Ready to proceed"));
    for (const char* action : {"Label3", "Label4"})
        EXPECT_EQ(t.Label("LogHtmForm1", action)->cursor().shape(), Qt::PointingHandCursor) << action;
    test::ExpectNothingCut(window);
    SaveScreenshot(window, "LogHtmForm1");

    Click(t.Label("LogHtmForm1", "Label3"));
    EXPECT_EQ(t.Label("LogHtmForm1", "Label2")->text(),
              QStringLiteral("The task was completed successfully."));
    Click(t.Label("LogHtmForm1", "Label4"));
    EXPECT_EQ(t.Settle(), std::nullopt);

    const ScriptedRun scripted("click LogHtmForm1.Label3\nclick LogHtmForm1.Label4\n", "logtohtm");
    const auto mine = FilesUnder(t.DriveC() / "ravelo");
    EXPECT_NE(mine.at("molecule.htm").find("<a href="), std::string::npos);  // a record was copied
    EXPECT_EQ(mine, FilesUnder(scripted.program.DriveC() / "ravelo"));
}

TEST(QtDatabase, BeginCountsAndGoTransfers) {
    QtProgram t;
    t.InstallDemo();
    if (!t.program().HasWindow("UpdtMolForm1")) GTEST_SKIP() << "no database transfer in this build";
    ASSERT_EQ(t.Start("", "UpdtMolForm1"), std::nullopt);
    t.Settle();
    QWidget* window = t.Window("UpdtMolForm1");
    ASSERT_NE(window, nullptr);
    QPushButton* go = t.Button("UpdtMolForm1", "Command1");
    EXPECT_EQ(go->text(), QStringLiteral("BEGIN"));
    const auto before = FilesUnder(t.DriveC() / "dmor");

    Click(go);
    EXPECT_EQ(go->text(), QStringLiteral("GO"));
    for (const char* line : {"Label3", "Label4", "Label5", "Label6"})
        EXPECT_EQ(t.Label("UpdtMolForm1", line)->text(), Q(t.Model("UpdtMolForm1", line).Caption())) << line;
    // The instruction line in the colour the window gives it.
    const ui::Control& label6 = t.Model("UpdtMolForm1", "Label6");
    ASSERT_TRUE(label6.state.backColour.has_value());
    const ui::Colour colour = *label6.state.backColour;
    EXPECT_EQ(ColourAt(t.Label("UpdtMolForm1", "Label6"), Margin(t.Label("UpdtMolForm1", "Label6"))),
              QColor((colour >> 16) & 0xFF, (colour >> 8) & 0xFF, colour & 0xFF));
    t.Settle();
    test::ExpectNothingCut(window);
    SaveScreenshot(window, "UpdtMolForm1");

    Click(go);
    EXPECT_EQ(t.Settle(), std::nullopt);
    EXPECT_NE(FilesUnder(t.DriveC() / "dmor"), before);  // the database took the new records

    const ScriptedRun scripted("click UpdtMolForm1.Command1\nclick UpdtMolForm1.Command1\n", "",
                               "UpdtMolForm1");
    EXPECT_EQ(FilesUnder(t.DriveC() / "dmor"), FilesUnder(scripted.program.DriveC() / "dmor"));
    EXPECT_EQ(FilesUnder(t.DriveC() / "ravelo"), FilesUnder(scripted.program.DriveC() / "ravelo"));
    for (const char* line : {"Label3", "Label4", "Label5", "Label6"})
        EXPECT_EQ(t.Label("UpdtMolForm1", line)->text(), Q(t.Model("UpdtMolForm1", line).Caption())) << line;
}

}  // namespace
}  // namespace ravelo
