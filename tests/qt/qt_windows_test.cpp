// The program's own windows on the desktop host: each one drawn whole from
// its model, and the main menu opening a modeless and a modal window.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

#include "qt/qt_program.hpp"

namespace ravelo {
namespace {

using test::Click;
using test::Q;
using test::QtProgram;

// Every window a build may have, by its name.
constexpr const char* kWindows[] = {"RaveloUtils", "FileConv", "CalcxForm", "LogHtmForm1", "UpdtMolForm1",
                                    "RaveloReadURLForm", "XYZ", "MDL", "PDB", "CSD", "Tripos", "MOPAC",
                                    "Alchemy", "Schakal", "M3D", "XCC", "XCX"};

// Captions as a window shows them: line breaks for CR LF.
QString Shown(std::string text) {
    for (std::size_t at; (at = text.find("\r\n")) != std::string::npos;) text.replace(at, 2, "\n");
    return Q(text);
}

// Expects the widget of a control to show what the model holds.
void ExpectShows(QWidget* window, const ui::Control& control) {
    const QString name = Q(control.Name());
    QWidget* widget = window->findChild<QWidget*>(name);
    ASSERT_NE(widget, nullptr) << control.Name();
    if (!control.Visible() || !control.Caption().empty()) {
        EXPECT_EQ(widget->isVisible(), control.Visible()) << control.Name();
    }
    QString text = Shown(control.Caption());
    if (auto* label = qobject_cast<QLabel*>(widget)) text = label->text();
    if (auto* button = qobject_cast<QPushButton*>(widget)) text = button->text().replace("&&", "&");
    if (auto* edit = qobject_cast<QLineEdit*>(widget)) text = edit->text();
    EXPECT_EQ(text, Shown(control.Caption())) << control.Name();
    std::vector<std::string> entries = control.state.items;
    if (auto* list = widget->findChild<QListWidget*>(name + "_list")) entries = test::Entries(list);
    if (auto* combo = widget->findChild<QComboBox*>(name + "_combo")) {
        entries.clear();
        for (int i = 0; i < combo->count(); ++i) entries.push_back(combo->itemText(i).toStdString());
    }
    EXPECT_EQ(entries, control.state.items) << control.Name();
}

TEST(QtWindows, EveryWindowShowsItsModelWholeAndClosesWithItsCloseButton) {
    int shown = 0;
    for (const char* name : kWindows) {
        QtProgram t;
        if (!t.program().HasWindow(name)) continue;
        ++shown;
        ASSERT_EQ(t.Start("", name), std::nullopt) << name;
        t.Settle();
        ui::Form& form = t.program().Window(name);
        QWidget* window = t.Window(name);
        ASSERT_NE(window, nullptr) << name;
        EXPECT_TRUE(window->isVisible()) << name;
        EXPECT_EQ(window->windowTitle(), Shown(form.Caption())) << name;
        for (const auto& control : form.Controls()) ExpectShows(window, *control);
        test::ExpectNothingCut(window);
        test::SaveScreenshot(window, name);
        window->close();
        EXPECT_FALSE(window->isVisible()) << name;
    }
    EXPECT_GE(shown, 6);  // the main window, the file converter and XYZ, MDL, PDB, CSD at least
}

TEST(QtMainWindow, MenuOpensWindowsAndClosingItEndsTheProgram) {
    QtProgram t;
    ASSERT_EQ(t.Start(""), std::nullopt);
    t.Settle();
    QWidget* window = t.Window("RaveloUtils");
    ASSERT_NE(window, nullptr);

    // The file converter opens beside the menu.
    Click(t.Label("RaveloUtils", "Label4"));
    ASSERT_NE(t.Window("FileConv"), nullptr);
    EXPECT_TRUE(t.Window("FileConv")->isVisible());
    EXPECT_TRUE(window->isVisible());

    // The calculator runs modal inside the menu's click, which returns when
    // the calculator's own click has closed it.
    if (t.program().HasWindow("CalcxForm")) {
        bool inside = false;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            QWidget* calculator = t.Window("CalcxForm");
            if (inside || !calculator || !calculator->isVisible()) return;
            inside = true;
            EXPECT_EQ(calculator->windowModality(), Qt::ApplicationModal);
            Click(t.Label("CalcxForm", "Label9"));  // EXIT
        });
        poll.start(0);
        Click(t.Label("RaveloUtils", "Label3"));
        EXPECT_TRUE(inside);
        EXPECT_FALSE(t.Window("CalcxForm")->isVisible());
        EXPECT_TRUE(window->isVisible());
    }

    // Closing the main window ends the program and closes every window.
    window->close();
    EXPECT_EQ(t.Settle(), 0);
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(t.Window("FileConv")->isVisible());
}

}  // namespace
}  // namespace ravelo
