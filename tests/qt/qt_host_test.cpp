// The desktop host on its own, with a probe window that has one control of
// every kind: what a user does reaches the model once, what the model says
// reaches the widgets, modal loops end with their window, and errors and the
// end of the program come out of the host's waits, not out of Qt.
#include "ui/qt/qt_host.hpp"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "qt/qt_program.hpp"
#include "runtime/error.hpp"

namespace ravelo::ui {
namespace {

using test::Click;
using test::ClickItem;
using test::DoubleClickItem;

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
        AddList("List1", ControlKind::ListBox, {"first", "second", "third"}).onDblClick = [this] {
            log += "open;";
        };
        AddList("Drive1", ControlKind::DriveList, {"c:", "z:"}).state.path = "C:";
        AddList("Dir1", ControlKind::DirList, {"..", "data", "work"});
        AddList("File1", ControlKind::FileList, {"a.xyz", "b.xyz"});
        Add("Command1", ControlKind::Button, "EXIT").onClick = [this] { Unload(); };
        Add("Command2", ControlKind::Button, "Fail").onClick = [] { Raise(kDivisionByZero); };
        Add("Command3", ControlKind::Button, "Back to the box").onClick = [this] { SetFocus("Text1"); };
    }
    void Form_KeyPress(int& key) override { log += "formkey" + std::to_string(key) + ";"; }
    void Form_Click() override { log += "formclick;"; }
    void Form_Unload(int& cancel) override {
        log += "unload;";
        if (refuseUnload) cancel = 1;
    }
    std::string log;
    bool refuseUnload = false;

private:
    // A list whose picks are logged as "NAME:ENTRY;".
    Control& AddList(const std::string& name, ControlKind kind, std::vector<std::string> entries) {
        Control& list = Add(name, kind);
        list.state.items = std::move(entries);
        auto pick = [this, name] { log += name + ":" + (*this)[name].SelectedItem() + ";"; };
        (kind == ControlKind::ListBox || kind == ControlKind::FileList ? list.onClick : list.onChange) = pick;
        return list;
    }
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

TEST_F(QtHostTest, ModalLoopAndCloseButtonEndOnlyWithAnUnload) {
    bool inside = false;
    // Worked from inside the modal loop; Show returns only after the unload.
    QTimer::singleShot(0, [&] {
        inside = true;
        EXPECT_TRUE(Window()->isVisible());
        EXPECT_EQ(Window()->windowModality(), Qt::ApplicationModal);
        probe.refuseUnload = true;
        Window()->close();  // the window cancels: it stays, and so does the loop
        EXPECT_TRUE(Window()->isVisible());
        probe.refuseUnload = false;
        Click(Widget<QPushButton>("Command1"));
    });
    host.Show(probe, true);
    EXPECT_TRUE(inside);
    EXPECT_FALSE(probe.Loaded());
    EXPECT_FALSE(Window()->isVisible());
    EXPECT_EQ(probe.log, "unload;unload;");

    // Shown again, modeless, the same window comes back without a loop, and
    // its close button unloads it.
    host.Show(probe, false);
    EXPECT_TRUE(Window()->isVisible());
    EXPECT_EQ(Window()->windowModality(), Qt::NonModal);
    Window()->close();
    EXPECT_FALSE(probe.Loaded());
    EXPECT_FALSE(Window()->isVisible());
}

TEST_F(QtHostTest, KeysReachTheTextBoxOrElseTheWindow) {
    host.Show(probe);
    QLineEdit* edit = Widget<QLineEdit>("Text1");
    EXPECT_EQ(Window()->focusWidget(), edit);  // a user starts typing there
    QTest::keyClicks(edit, "x#a");
    QTest::keyClick(edit, Qt::Key_Return);
    // Enter is 13; "#" never reaches the box; "a" arrives as "b". Every
    // change of the text is one change event with the model's text.
    EXPECT_EQ(probe.log, "key120;change:x;key35;key97;change:xb;key13;");
    EXPECT_EQ(edit->text(), QStringLiteral("xb"));
    EXPECT_EQ(probe["Text1"].Text(), "xb");

    // Keys and clicks that no control takes are the window's.
    probe.log.clear();
    Window()->setFocus();
    QTest::keyClick(Window(), Qt::Key_Z);
    QTest::mouseClick(Window(), Qt::LeftButton, {}, QPoint(3, 3));  // the margin, no control
    EXPECT_EQ(probe.log, "formkey122;formclick;");

    // The program's own text and focus show in the window.
    probe["Text1"].SetText("set by the program");
    host.Refresh(probe);
    EXPECT_EQ(edit->text(), QStringLiteral("set by the program"));
    Click(Widget<QPushButton>("Command3"));
    EXPECT_EQ(Window()->focusWidget(), edit);
}

TEST_F(QtHostTest, EveryListKindDeliversOnePickPerChoice) {
    host.Show(probe);
    QListWidget* list = Widget<QListWidget>("List1_list");
    ClickItem(list, 1);
    ClickItem(list, 1);  // the current entry, clicked again
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Down);
    DoubleClickItem(list, 0);
    EXPECT_EQ(probe.log, "List1:second;List1:second;List1:third;List1:first;open;");
    EXPECT_EQ(probe["List1"].state.listIndex, 0);

    // A drive is chosen with the keys (the list shows drive C before any
    // pick); a folder opens on a double click only; a file is picked with
    // one click.
    probe.log.clear();
    QComboBox* drives = Widget<QComboBox>("Drive1_combo");
    drives->setFocus();
    QTest::keyClick(drives, Qt::Key_Down);
    QListWidget* folders = Widget<QListWidget>("Dir1_list");
    ClickItem(folders, 2);
    DoubleClickItem(folders, 1);
    ClickItem(Widget<QListWidget>("File1_list"), 1);
    EXPECT_EQ(probe.log, "Drive1:z:;Dir1:data;File1:b.xyz;");

    // Entries the program changes replace the shown ones.
    probe["List1"].Clear();
    probe["List1"].AddItem("only");
    host.Refresh(probe);
    EXPECT_EQ(test::Entries(list), std::vector<std::string>{"only"});
    EXPECT_EQ(list->currentRow(), -1);
}

TEST_F(QtHostTest, LabelsShowCaptionsColoursAndVisibilityAtOnce) {
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
    for (const auto& [palette, shown] : {std::pair{12, QColor(0xFF, 0, 0)}, {14, QColor(0xFF, 0xFF, 0)}}) {
        probe["Label2"].SetBackColour(PaletteColour(palette));
        host.Refresh(probe);
        EXPECT_EQ(clickable->grab().toImage().pixelColor(padding), shown) << palette;
    }

    // A long caption wraps inside a window that grows to show it whole.
    std::string longCaption;
    for (int i = 0; i < 40; ++i) longCaption += "a rather long line of text ";
    probe["Label1"].SetCaption(longCaption + "\r\nand a second one");
    host.Refresh(probe);
    EXPECT_EQ(plain->text(), test::Q(longCaption + "\nand a second one"));
    test::ExpectNothingCut(Window());

    // Hidden in the model, hidden on the screen; an emptied plain label
    // takes no room.
    probe["Command2"].SetVisible(false);
    probe["Label1"].SetCaption("");
    host.Refresh(probe);
    EXPECT_FALSE(Widget<QPushButton>("Command2")->isVisible());
    EXPECT_FALSE(plain->isVisible());

    // What an event of another window writes on this one shows here too.
    Probe other{host};
    other["Label2"].onClick = [&] { probe["Label1"].SetCaption("written by another window"); };
    host.Show(other);
    Click(host.WindowOf(other)->findChild<QLabel*>(QStringLiteral("Label2")));
    EXPECT_TRUE(plain->isVisible());
    EXPECT_EQ(plain->text(), QStringLiteral("written by another window"));
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
    for (const auto& [press, buttons, result] :
         {std::tuple{QMessageBox::No, MsgButtons::YesNo, MsgResult::No},
          {QMessageBox::Yes, MsgButtons::YesNoCancel, MsgResult::Yes},
          {QMessageBox::Cancel, MsgButtons::OkCancel, MsgResult::Cancel},
          {QMessageBox::Ok, MsgButtons::Ok, MsgResult::Ok}}) {
        std::vector<std::string> seen;  // each box's "title|text"
        QTimer user;
        QObject::connect(&user, &QTimer::timeout, [&, press = press] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box) return;
            seen.push_back((box->windowTitle() + QLatin1Char('|') + box->text()).toStdString());
            QAbstractButton* button = box->button(press);
            EXPECT_NE(button, nullptr) << seen.back();
            button ? button->click() : box->reject();
        });
        user.start(5);
        EXPECT_EQ(host.MsgBox("Convert another?\r\nSecond line", buttons, "Question title"), result);
        EXPECT_EQ(seen, std::vector<std::string>{"Question title|Convert another?\nSecond line"});
    }
}

}  // namespace
}  // namespace ravelo::ui
