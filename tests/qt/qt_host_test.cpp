// The desktop host with a probe window holding a control of every kind: user actions
// reach the model once, its changes reach the widgets, waits end as the program says.
#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include "qt/qt_program.hpp"
#include "support/error_of.hpp"

namespace ravelo::ui {
namespace {

using test::Click;

// Clicks (twice: double-clicks) an entry of a list.
void ClickItem(QListWidget* list, int row, bool twice = false) {
    const QPoint at = list->visualItemRect(list->item(row)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
    if (twice) QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
}

// A window that logs its events.
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
        // Lists whose picks are logged as "NAME:ENTRY;".
        auto list = [this](const char* name, ControlKind kind, std::vector<std::string> entries) -> Control& {
            Control& c = Add(name, kind);
            c.state.items = std::move(entries);
            (kind == ControlKind::ListBox || kind == ControlKind::FileList ? c.onClick : c.onChange) =
                [this, &c] { log += c.Name() + ":" + c.SelectedItem() + ";"; };
            return c;
        };
        list("List1", ControlKind::ListBox, {"one", "two", "three"}).onDblClick = [this] { log += "open;"; };
        list("Drive1", ControlKind::DriveList, {"c:", "z:"}).state.path = "C:";
        list("Dir1", ControlKind::DirList, {"..", "data", "work"});
        list("File1", ControlKind::FileList, {"a.xyz", "b.xyz"});
        Add("Command1", ControlKind::Button, "EXIT").onClick = [this] { Unload(); };
        Add("Command2", ControlKind::Button, "Fail").onClick = [] { Raise(kDivisionByZero); };
    }
    void Form_KeyPress(int& key) override { log += "formkey" + std::to_string(key) + ";"; }
    void Form_Click() override { log += "formclick;"; }
    void Form_Unload(int& cancel) override {
        log += "unload;";
        cancel = refuseUnload;
    }
    std::string log;
    bool refuseUnload = false;
};

class QtHostTest : public testing::Test {
protected:
    QWidget* Window() { return host.WindowOf(probe); }
    QListWidget* List(const char* name) { return Window()->findChild<QListWidget*>(name); }
    QWidget* Widget(const char* name) { return Window()->findChild<QWidget*>(name); }
    QtHost host;
    Probe probe{host};
};

TEST_F(QtHostTest, ModalLoopsEndWithAnUnloadAndErrorsAndTheEndComeOutOfTheWaits) {
    Probe opener{host};  // the modal loop runs inside another window's click, as a menu's
    opener["Label2"].onClick = [&] { host.Show(probe, true); };
    host.Show(opener);
    QTimer::singleShot(0, [&] {  // runs inside the modal loop, so the click returns only after the unload
        EXPECT_EQ(Window()->windowModality(), Qt::ApplicationModal);
        probe.refuseUnload = true;
        Window()->close();  // refused: the window and its loop stay
        EXPECT_TRUE(Window()->isVisible());
        probe.refuseUnload = false;
        Click(Widget("Command1"));
    });
    Click(host.WindowOf(opener)->findChild<QWidget*>("Label2"));
    EXPECT_FALSE(probe.Loaded() || Window()->isVisible());
    EXPECT_EQ(probe.log, "unload;unload;");

    host.Show(probe);
    opener.Unload();
    Click(Widget("Command2"));  // raises inside Qt's click
    EXPECT_EQ(test::ErrorOf([&] { host.DoEvents(); }), kDivisionByZero);
    EXPECT_EQ(test::ErrorOf([&] { host.DoEvents(); }), 0);  // thrown once
    Click(Widget("Command1"));                              // the last window closed: nothing to wait for
    EXPECT_EQ(test::EndOf([&] { host.WaitForEvent(); }), 0);
}

TEST_F(QtHostTest, KeysAndListPicksReachTheModelOnce) {
    host.Show(probe);
    auto* edit = qobject_cast<QLineEdit*>(Widget("Text1"));
    EXPECT_EQ(Window()->focusWidget(), edit);
    QTest::keyClicks(edit, "x#a");
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(edit->text(), QStringLiteral("xb"));
    Window()->setFocus();  // keys and clicks that no control takes are the window's
    QTest::keyClick(Window(), Qt::Key_Z);
    QTest::mouseClick(Window(), Qt::LeftButton, {}, QPoint(3, 3));
    // "#" never reaches the box, "a" arrives as "b"; one change event per change.
    EXPECT_EQ(probe.log, "key120;change:x;key35;key97;change:xb;key13;formkey122;formclick;");

    probe.log.clear();
    auto* list = List("List1_list");
    ClickItem(list, 1);
    ClickItem(list, 1);  // the current entry again
    QTest::keyClick(list, Qt::Key_Down);
    ClickItem(list, 0, true);
    // A drive by keys (C shown first), a folder on a double click only, a file on one click.
    QTest::keyClick(Widget("Drive1_combo"), Qt::Key_Down);
    ClickItem(List("Dir1_list"), 2);
    ClickItem(List("Dir1_list"), 1, true);
    ClickItem(List("File1_list"), 1);
    EXPECT_EQ(probe.log, "List1:two;List1:two;List1:three;List1:one;open;Drive1:z:;Dir1:data;File1:b.xyz;");
}

TEST_F(QtHostTest, LabelsTakeClicksAndTheProgramsChangesShowOnRefreshInEveryWindow) {
    host.Show(probe);
    auto* clickable = Widget("Label2");
    EXPECT_EQ(clickable->cursor().shape(), Qt::PointingHandCursor);
    Click(clickable);
    Click(Widget("Label1"));  // no click event: nothing
    EXPECT_EQ(probe.log, "click;");
    // A flash: each colour shows on Refresh, before any event; the point is left of the caption.
    for (const auto& [palette, shown] : {std::pair{12, QColor(0xFF, 0, 0)}, {14, QColor(0xFF, 0xFF, 0)}}) {
        probe["Label2"].SetBackColour(PaletteColour(palette));
        host.Refresh(probe);
        EXPECT_EQ(clickable->grab().toImage().pixelColor(5, clickable->height() / 2), shown) << palette;
    }
    std::string longCaption;  // wraps inside a window that grows to show it whole
    for (int i = 0; i < 40; ++i) longCaption += "a rather long line of text ";
    probe["Label1"].SetCaption(longCaption + "\r\nand a second one");
    probe["Text1"].SetText("set by the program");
    probe["List1"].Clear();
    probe["List1"].AddItem("only");
    probe["Command2"].SetVisible(false);
    host.Refresh(probe);
    test::ExpectShown(Window(), probe);
    EXPECT_EQ(List("List1_list")->currentRow(), -1);

    probe["Label1"].SetCaption("");  // an emptied plain label takes no room
    host.Refresh(probe);
    EXPECT_FALSE(Widget("Label1")->isVisible());
    Probe other{host};  // what an event of another window writes on this one shows here too
    other["Label2"].onClick = [&] { probe["Label1"].SetCaption("written by another window"); };
    host.Show(other);
    Click(host.WindowOf(other)->findChild<QWidget*>("Label2"));
    test::ExpectShown(Window(), probe);
}

TEST_F(QtHostTest, MessageBoxesGiveTheButtonTheUserPressed) {
    host.Show(probe);
    for (const auto& [press, buttons, result] :
         {std::tuple{QMessageBox::No, MsgButtons::YesNo, MsgResult::No},
          {QMessageBox::Yes, MsgButtons::YesNoCancel, MsgResult::Yes},
          {QMessageBox::Cancel, MsgButtons::OkCancel, MsgResult::Cancel},
          {QMessageBox::Ok, MsgButtons::Ok, MsgResult::Ok}}) {
        QString seen;  // the box's "title|text"
        QTimer::singleShot(0, [&, press = press] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            seen = box->windowTitle() + '|' + box->text();
            box->button(press)->click();
        });
        EXPECT_EQ(host.MsgBox("Convert another?\r\nSecond line", buttons, "Question title"), result);
        EXPECT_EQ(seen, QStringLiteral("Question title|Convert another?\nSecond line"));
    }
}

}  // namespace
}  // namespace ravelo::ui
