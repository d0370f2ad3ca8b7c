// The desktop host on its own, with a probe window: what a user does reaches
// the model once, what the model says reaches the widgets, modal loops end
// with their window, and errors and the end of the program come out of the
// host's waits, not out of Qt.
#include "ui/qt/qt_host.hpp"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "qt/qt_program.hpp"
#include "runtime/error.hpp"
#include "shell/run.hpp"

namespace ravelo::ui {
namespace {

using test::Click;
using test::ClickItem;
using test::ColourAt;

// A window that records its events.
class Probe : public Form {
public:
    explicit Probe(UiHost& host) : Form(host, "Probe", "Probe window") {
        Add("Label1", ControlKind::Label, "Probe title");
        Add("Label2", ControlKind::Label, "Press me").onClick = [this] { log += "click;"; };
        Control& text = Add("Text1", ControlKind::TextBox);
        text.onChange = [this] { log += "change:" + (*this)["Text1"].Text() + ";"; };
        text.onKeyPress = [this](int& key) {
            log += "key" + std::to_string(key) + ";";
            if (key == '#') key = 0;    // swallowed
            if (key == 'a') key = 'b';  // typed as another character
        };
        Control& list = Add("List1", ControlKind::ListBox);
        for (const char* entry : {"first", "second", "third"}) list.AddItem(entry);
        list.onClick = [this] { log += "pick:" + (*this)["List1"].SelectedItem() + ";"; };
        Add("Command1", ControlKind::Button, "EXIT").onClick = [this] { Unload(); };
        Add("Command2", ControlKind::Button, "Fail").onClick = [] { Raise(kDivisionByZero); };
    }
    void Form_KeyPress(int& key) override { log += "formkey" + std::to_string(key) + ";"; }
    void Form_Click() override { log += "formclick;"; }
    void Form_Unload(int& cancel) override {
        log += "unload;";
        if (refuseUnload) cancel = 1;
    }
    std::string log;
    bool refuseUnload = false;
};

class QtHostTest : public testing::Test {
protected:
    QWidget* Window() { return host.WindowOf(probe); }
    template <class W>
    W* Widget(const char* name) {
        return Window()->findChild<W*>(QString::fromLatin1(name));
    }

    QtHost host;
    Probe probe{host};
};

TEST_F(QtHostTest, ModalWindowRunsItsOwnLoopUntilItIsUnloaded) {
    bool clicked = false;
    // Pressed from inside the modal loop; Show returns only after it.
    QTimer::singleShot(0, [&] {
        ASSERT_NE(Window(), nullptr);
        EXPECT_TRUE(Window()->isVisible());
        EXPECT_EQ(Window()->windowModality(), Qt::ApplicationModal);
        Click(Widget<QPushButton>("Command1"));
        clicked = true;
    });
    host.Show(probe, true);
    EXPECT_TRUE(clicked);
    EXPECT_FALSE(probe.Loaded());
    EXPECT_FALSE(Window()->isVisible());

    // Shown again, modeless, the same window comes back without a loop.
    host.Show(probe, false);
    EXPECT_TRUE(Window()->isVisible());
    EXPECT_EQ(Window()->windowModality(), Qt::NonModal);
}

TEST_F(QtHostTest, CloseButtonUnloadsUnlessTheWindowCancels) {
    host.Show(probe);
    probe.refuseUnload = true;
    Window()->close();
    EXPECT_TRUE(probe.Loaded());
    EXPECT_TRUE(Window()->isVisible());

    probe.refuseUnload = false;
    Window()->close();
    EXPECT_FALSE(probe.Loaded());
    EXPECT_FALSE(Window()->isVisible());
    EXPECT_EQ(probe.log, "unload;unload;");
}

TEST_F(QtHostTest, KeysAndTypingReachTheTextBox) {
    host.Show(probe);
    QLineEdit* edit = Widget<QLineEdit>("Text1");
    edit->setFocus();
    QTest::keyClicks(edit, "x#a");
    QTest::keyClick(edit, Qt::Key_Return);
    // Enter is 13; "#" never reaches the box; "a" arrives as "b". Every
    // change of the text is one change event with the model's text.
    EXPECT_EQ(probe.log, "key120;change:x;key35;key97;change:xb;key13;");
    EXPECT_EQ(edit->text(), QStringLiteral("xb"));
    EXPECT_EQ(probe["Text1"].Text(), "xb");

    // The program's own text shows in the box.
    probe["Text1"].SetText("set by the program");
    host.Refresh(probe);
    EXPECT_EQ(edit->text(), QStringLiteral("set by the program"));
}

TEST_F(QtHostTest, TheWindowTakesOnlyKeysAndClicksThatNoControlTook) {
    host.Show(probe);
    EXPECT_EQ(Window()->focusWidget(), Widget<QLineEdit>("Text1"));  // a user starts typing there
    QTest::keyClick(Widget<QLineEdit>("Text1"), Qt::Key_Return);
    Window()->setFocus();
    QTest::keyClick(Window(), Qt::Key_Z);
    QTest::mouseClick(Window(), Qt::LeftButton, {}, QPoint(3, 3));  // the margin, no control
    EXPECT_EQ(probe.log, "key13;formkey122;formclick;");
}

TEST_F(QtHostTest, ListPickIsOneEventPerClickOrKey) {
    host.Show(probe);
    QListWidget* list = Widget<QListWidget>("List1_list");
    ClickItem(list, 1);
    ClickItem(list, 1);  // the current entry, clicked again
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(probe.log, "pick:second;pick:second;pick:third;");
    EXPECT_EQ(probe["List1"].state.listIndex, 2);

    // Entries the program changes replace the shown ones.
    probe["List1"].Clear();
    probe["List1"].AddItem("only");
    host.Refresh(probe);
    EXPECT_EQ(test::Entries(list), std::vector<std::string>{"only"});
    EXPECT_EQ(list->currentRow(), -1);
}

TEST_F(QtHostTest, ClickableLabelsLookClickableAndColoursShowAtOnce) {
    host.Show(probe);
    QLabel* clickable = Widget<QLabel>("Label2");
    QLabel* plain = Widget<QLabel>("Label1");
    EXPECT_EQ(clickable->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_NE(plain->cursor().shape(), Qt::PointingHandCursor);
    Click(clickable);
    Click(plain);  // a label without a click event does nothing
    EXPECT_EQ(probe.log, "click;");

    // A flash: each colour is on the screen as soon as the program refreshes,
    // before any event is processed. The point is inside the frame, left of
    // the centred caption.
    const QPoint padding(5, clickable->height() / 2);
    probe["Label2"].SetBackColour(PaletteColour(12));
    host.Refresh(probe);
    EXPECT_EQ(ColourAt(clickable, padding), QColor(0xFF, 0, 0));
    probe["Label2"].SetBackColour(PaletteColour(14));
    host.Refresh(probe);
    EXPECT_EQ(ColourAt(clickable, padding), QColor(0xFF, 0xFF, 0));

    // Hidden in the model, hidden on the screen; an emptied plain label
    // takes no room.
    probe["Command2"].SetVisible(false);
    probe["Label1"].SetCaption("");
    host.Refresh(probe);
    EXPECT_FALSE(Widget<QPushButton>("Command2")->isVisible());
    EXPECT_FALSE(plain->isVisible());
}

TEST_F(QtHostTest, ErrorsAndTheProgramsEndComeOutOfTheHostsWaits) {
    host.Show(probe);
    Click(Widget<QPushButton>("Command2"));  // raises inside Qt's click
    try {
        host.DoEvents();
        ADD_FAILURE() << "the error stayed inside the host";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number, kDivisionByZero);
    }
    EXPECT_NO_THROW(host.DoEvents());  // thrown once

    // Closing the last window leaves nothing to wait for: the program ends.
    Click(Widget<QPushButton>("Command1"));
    try {
        host.WaitForEvent();
        ADD_FAILURE() << "the program went on without a window";
    } catch (const ProgramEnd& end) {
        EXPECT_EQ(end.status, 0);
    }
}

TEST_F(QtHostTest, MessageBoxesGiveTheButtonTheUserPressed) {
    host.Show(probe);
    {
        test::MessageBoxAnswers answers(QStringLiteral("&No"));
        EXPECT_EQ(host.MsgBox("Convert another?\r\nSecond line", MsgButtons::YesNo, "Question title"),
                  MsgResult::No);
        ASSERT_EQ(answers.Seen().size(), 1u);
        EXPECT_EQ(answers.Seen()[0], "Question title|Convert another?\nSecond line");
    }
    {
        test::MessageBoxAnswers answers(QStringLiteral("Cancel"));
        EXPECT_EQ(host.MsgBox("Go on?", MsgButtons::OkCancel, "T"), MsgResult::Cancel);
    }
    {
        test::MessageBoxAnswers answers(QStringLiteral("OK"));
        EXPECT_EQ(host.MsgBox("Done", MsgButtons::Ok, "T"), MsgResult::Ok);
    }
}

// A host that only says who it is.
class MarkerHost : public HeadlessHost {};

TEST(QtHostChoice, DesktopHostWhenAskedForOrWhenThereIsADisplay) {
    const DesktopHostFactory desktop = [] { return std::make_unique<MarkerHost>(); };
    const auto chosen = [&](const DesktopHostFactory& factory) {
        return dynamic_cast<MarkerHost*>(ServicesFromEnvironment(factory).ui.get()) != nullptr;
    };
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    qunsetenv("DISPLAY");
    qunsetenv("WAYLAND_DISPLAY");

    qputenv("RAVELO_UI", "headless");
    EXPECT_FALSE(chosen(desktop));
    qputenv("RAVELO_UI", "Qt");
    EXPECT_TRUE(chosen(desktop));
    EXPECT_FALSE(chosen(nullptr));  // a build without the desktop host runs headless

    qunsetenv("RAVELO_UI");
    EXPECT_TRUE(chosen(desktop));  // QT_QPA_PLATFORM names a platform
    qunsetenv("QT_QPA_PLATFORM");
    EXPECT_FALSE(chosen(desktop));  // no display at all
    qputenv("DISPLAY", ":99");
    EXPECT_TRUE(chosen(desktop));
    EXPECT_FALSE(chosen(nullptr));

    qunsetenv("DISPLAY");
    qputenv("QT_QPA_PLATFORM", platform);
}

}  // namespace
}  // namespace ravelo::ui
