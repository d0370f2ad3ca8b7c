// The program's start-up and converter windows on the desktop host, worked
// through their real widgets: the main menu, the file converter's lists and
// its conversion, and the converter windows opened without a file.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include "qt/qt_program.hpp"
#include "shell/raveloutilx.hpp"

namespace ravelo {
namespace {

using test::Click;
using test::QtProgram;
using test::SaveScreenshot;

QString Q(const std::string& text) { return QString::fromStdString(text); }

std::string CorpusFile(const std::string& name) {
    return test::ReadHostFile(std::filesystem::path(RAVELO_TEST_DATA) / "corpus" / name);
}

// The converter windows a build may have, by their names.
constexpr const char* kConverterWindows[] = {"XYZ",     "MDL",     "PDB", "CSD", "Tripos", "MOPAC",
                                             "Alchemy", "Schakal", "M3D", "XCC", "XCX"};

TEST(QtMainWindow, ShowsItsMenuAndOpensTheUtilities) {
    QtProgram t;
    t.Install();
    ASSERT_EQ(t.Start(""), std::nullopt);
    t.Settle();
    QWidget* window = t.Window("RaveloUtils");
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Ravelo Utilities"));
    EXPECT_TRUE(t.Label("RaveloUtils", "Label1")->isVisible());
    EXPECT_EQ(t.Label("RaveloUtils", "Label1")->text(), QStringLiteral("The Ravelo Suite of Utilities"));
    EXPECT_EQ(t.Label("RaveloUtils", "Label10")->text(), Q(VersionLine()));
    EXPECT_FALSE(t.Label("RaveloUtils", "Label7")->isVisible());  // "Read URLs" is hidden
    for (const char* entry : {"Label2", "Label3", "Label4", "Label5", "Label6", "Label8", "Label9"}) {
        QLabel* label = t.Label("RaveloUtils", entry);
        EXPECT_TRUE(label->isVisible()) << entry;
        EXPECT_EQ(label->text(), Q(t.Model("RaveloUtils", entry).Caption())) << entry;
        EXPECT_EQ(label->cursor().shape(), Qt::PointingHandCursor) << entry;
    }
    test::ExpectNothingCut(window);
    SaveScreenshot(window, "RaveloUtils");

    // A utility this build does not offer says so in the version line, which
    // the window shows while the program waits.
    Click(t.Label("RaveloUtils", "Label2"));
    EXPECT_EQ(t.Label("RaveloUtils", "Label10")->text(), Q(std::string(kNotOffered)));

    Click(t.Label("RaveloUtils", "Label4"));
    ASSERT_NE(t.Window("FileConv"), nullptr);
    EXPECT_TRUE(t.Window("FileConv")->isVisible());
    EXPECT_TRUE(window->isVisible());

    // Closing the main window with its close button ends the program and
    // closes every window.
    window->close();
    EXPECT_EQ(t.Settle(), 0);
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(t.Window("FileConv")->isVisible());
}

TEST(QtMainWindow, ExitButtonEndsTheProgram) {
    QtProgram t;
    t.Install();
    ASSERT_EQ(t.Start(""), std::nullopt);
    Click(t.Button("RaveloUtils", "Command1"));
    EXPECT_EQ(t.Settle(), 0);
    EXPECT_FALSE(t.Window("RaveloUtils")->isVisible());
}

TEST(QtFileConv, ListsBrowseTheDriveAndTheButtonConvertsThePickedFile) {
    QtProgram t;
    t.Install();
    t.Write("C:\\data\\methane.xyz", CorpusFile("methane.xyz"));
    ASSERT_EQ(t.Start("fileconv"), std::nullopt);
    t.Settle();
    QWidget* window = t.Window("FileConv");
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(t.Label("FileConv", "Label2")->text(), Q(std::string(kIdentifyFilePrompt)));

    // Drive C, then its folder "data".
    test::ChooseEntry(t.DriveList("FileConv", "Drive1"), QStringLiteral("c:"));
    QListWidget* folders = t.List("FileConv", "Dir1");
    EXPECT_EQ(test::Entries(folders), t.Model("FileConv", "Dir1").state.items);
    const int data = test::RowOf(folders, QStringLiteral("data"));
    ASSERT_GE(data, 0) << "drive C's folders are not listed";
    test::DoubleClickItem(folders, data);
    EXPECT_EQ(t.Model("FileConv", "Dir1").state.path, "C:\\data");
    QListWidget* files = t.List("FileConv", "File1");
    EXPECT_EQ(test::Entries(files), std::vector<std::string>{"methane.xyz"});

    test::ClickItem(files, 0);
    EXPECT_EQ(t.program().CurrentFile, "C:\\data\\methane.xyz");
    QPushButton* process = t.Button("FileConv", "Command1");
    EXPECT_EQ(process->text(), QStringLiteral("Click Here to Process the Selected File"));
    t.Settle();
    test::ExpectNothingCut(window);
    SaveScreenshot(window, "FileConv");

    // The converter window shows while the file converter says "Done" and
    // pauses; then it closes and the new structure file is listed.
    test::WhenReady converting(
        [&] {
            QWidget* xyz = t.Window("XYZ");
            return xyz && xyz->isVisible() && process->text() == QStringLiteral("Done");
        },
        [&] {
            EXPECT_EQ(t.TextBox("XYZ", "Text1")->text(), Q(t.program().CurrentFile));
            EXPECT_EQ(t.Label("XYZ", "Label1")->text(), Q(t.Model("XYZ", "Label1").Caption()));
            for (const char* button : {"Command1", "Command2", "Command3", "Command4"})
                EXPECT_FALSE(t.Button("XYZ", button)->isVisible()) << button;
        });
    Click(process);
    EXPECT_EQ(t.Settle(), std::nullopt);
    EXPECT_TRUE(converting.Seen());
    EXPECT_FALSE(t.Window("XYZ")->isVisible());
    EXPECT_EQ(process->text(), Q(std::string(kSelectFilePrompt)));
    EXPECT_GE(test::RowOf(files, QStringLiteral("methane.sxs")), 0);
    // The same structure file as a command-line conversion of the file.
    const std::string golden = test::ReadHostFile(std::filesystem::path(RAVELO_TEST_DATA) /
                                                  "golden/converter/methane/case/methane.sxs");
    ASSERT_FALSE(golden.empty());
    EXPECT_EQ(t.Read("C:\\data\\methane.sxs"), golden);
}

TEST(QtConverterWindow, OpenedWithoutANameAsksForOneAndConvertsTheTypedName) {
    QtProgram t;
    t.Install();
    t.Write("C:\\data\\methane.xyz", CorpusFile("methane.xyz"));
    ASSERT_EQ(t.Start("", "XYZ"), std::nullopt);
    t.Settle();
    QLabel* prompt = t.Label("XYZ", "Label3");
    EXPECT_TRUE(prompt->isVisible());
    EXPECT_EQ(prompt->text(), QStringLiteral("Enter the XYZ file's Name"));
    EXPECT_FALSE(t.Button("XYZ", "Command3")->isVisible());

    // Cancel empties the box and puts the focus back in it.
    QLineEdit* name = t.TextBox("XYZ", "Text1");
    name->setFocus();
    QTest::keyClicks(name, QStringLiteral("C:\\data\\wrong.xyz"));
    Click(t.Button("XYZ", "Command2"));
    EXPECT_TRUE(name->text().isEmpty());
    EXPECT_EQ(t.Window("XYZ")->focusWidget(), name);

    QTest::keyClicks(name, QStringLiteral("C:\\data\\methane.xyz"));
    EXPECT_EQ(t.Model("XYZ", "Text1").Text(), "C:\\data\\methane.xyz");
    Click(t.Button("XYZ", "Command1"));  // Convert
    EXPECT_EQ(t.Settle(), std::nullopt);

    // Only YES and EXIT are left, under the question.
    EXPECT_TRUE(t.Label("XYZ", "Label5")->isVisible());
    EXPECT_EQ(t.Label("XYZ", "Label5")->text(), QStringLiteral("Convert another XYZ file?"));
    std::vector<std::string> buttons;
    for (const char* button : {"Command1", "Command2", "Command3", "Command4"})
        if (t.Button("XYZ", button)->isVisible())
            buttons.push_back(t.Button("XYZ", button)->text().toStdString());
    EXPECT_EQ(buttons, (std::vector<std::string>{"YES", "EXIT"}));

    // The script host, given the same name, writes the same file.
    test::TestProgram scripted("text XYZ.Text1 C:\\data\\methane.xyz\nclick XYZ.Command1\n", 0);
    scripted.Install();
    scripted.Write("C:\\data\\methane.xyz", CorpusFile("methane.xyz"));
    scripted.Run("", "XYZ");
    ASSERT_FALSE(scripted.Read("C:\\data\\methane.sxs").empty());
    EXPECT_EQ(t.Read("C:\\data\\methane.sxs"), scripted.Read("C:\\data\\methane.sxs"));
}

TEST(QtConverterWindow, EveryConverterWindowShowsItsPromptWhole) {
    QtProgram t;
    t.Install();
    ASSERT_EQ(t.Start(""), std::nullopt);
    int shown = 0;
    for (const char* name : kConverterWindows) {
        if (!t.program().HasWindow(name)) continue;
        ++shown;
        ui::Form& form = t.program().Window(name);
        t.program().ui.Show(form);
        t.Settle();
        QWidget* window = t.Window(name);
        ASSERT_NE(window, nullptr) << name;
        EXPECT_TRUE(window->isVisible()) << name;
        EXPECT_EQ(window->windowTitle(), Q(form.Caption())) << name;
        // Title, prompt and the name box, with Convert, Cancel and EXIT.
        EXPECT_EQ(t.Label(name, "Label1")->text(), Q(form["Label1"].Caption())) << name;
        EXPECT_FALSE(form["Label3"].Caption().empty()) << name;
        EXPECT_EQ(t.Label(name, "Label3")->text(), Q(form["Label3"].Caption())) << name;
        EXPECT_TRUE(t.Label(name, "Label3")->isVisible()) << name;
        EXPECT_TRUE(t.TextBox(name, "Text1")->isVisible()) << name;
        for (const char* button : {"Command1", "Command2", "Command4"})
            EXPECT_TRUE(t.Button(name, button)->isVisible()) << name << "." << button;
        EXPECT_FALSE(t.Button(name, "Command3")->isVisible()) << name;
        test::ExpectNothingCut(window);
        SaveScreenshot(window, name);
        window->close();
        EXPECT_FALSE(form.Loaded()) << name;
    }
    EXPECT_GE(shown, 3);  // XYZ, MDL and PDB at least
}

}  // namespace
}  // namespace ravelo
