// The window model and the script host: lifecycle, events, message boxes.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "runtime/error.hpp"
#include "ui/form.hpp"
#include "ui/script_host.hpp"

namespace ravelo::ui {
namespace {

// A window that records its events.
class Probe : public Form {
public:
    explicit Probe(UiHost& host) : Form(host, "Probe", "Probe window") {
        Add("Label1", ControlKind::Label, "Designed caption").onClick = [this] { log += "click;"; };
        Control& text = Add("Text1", ControlKind::TextBox);
        text.onChange = [this] { log += "change:" + (*this)["Text1"].Text() + ";"; };
        text.onKeyPress = [this](int& key) { log += "key" + std::to_string(key) + ";"; };
        Control& list = Add("List1", ControlKind::ListBox);
        list.onClick = [this] { log += "picked:" + (*this)["List1"].SelectedItem() + ";"; };
        for (const char* item : {"first", "second"}) list.AddItem(item);
        Control& dir = Add("Dir1", ControlKind::DirList);
        dir.onNavigate = [this](int index) { log += "navigate" + std::to_string(index) + ";"; };
        dir.onChange = [this] { log += "dirchange;"; };
        dir.AddItem("C:\\");
        Add("Command1", ControlKind::Button, "EXIT").onClick = [this] { Unload(); };
    }
    void Form_Load() override { log += "load;"; }
    void Form_Activate() override { log += "activate;"; }
    void Form_Unload(int&) override { log += "unload;"; }
    void Form_Click() override { log += "formclick;"; }
    std::string log;
};

// The probe window on a script host running `script`; output goes to stdout.
struct Scripted {
    explicit Scripted(const std::string& script)
        : host(std::make_unique<std::istringstream>(script), stdout), probe(host) {
        host.windowProvider = [this](std::string_view name) { return name == "Probe" ? &probe : nullptr; };
    }
    ScriptHost host;
    Probe probe;
};

TEST(ScriptHost, CommandsReachOpenWindowsAndTheScriptsEndUnloadsThem) {
    Scripted s("click Probe.Label1\nshow Probe\nclick Probe.Label1\ntext Probe.Text1 two  words \n"
               "text Probe.Text1 two  words \nkey Probe.Text1 13\npick Probe.List1 1\npick Probe.Dir1 0\n"
               "click Probe\nclose Probe\nclick Probe.Label1\nshow Probe\n");
    EXPECT_THROW(for (;;) s.host.WaitForEvent(), ProgramEnd);
    // Typing fires the change event even when the text stays the same.
    EXPECT_EQ(s.probe.log,
              "load;activate;click;change:two  words ;change:two  words ;key13;picked:second;"
              "navigate0;dirchange;formclick;unload;load;activate;unload;");
    EXPECT_FALSE(s.probe.Loaded());
}

TEST(ScriptHost, ProgramAssignmentsFireChangeOnlyOnChangesAndReloadingRestoresTheDesign) {
    Scripted s("");
    s.host.Show(s.probe);
    for (const char* text : {"", "x", "x"}) s.probe["Text1"].SetText(text);
    EXPECT_EQ(s.probe.log, "load;activate;change:x;");
    s.probe["Label1"].SetCaption("changed");
    s.probe["Label1"].SetVisible(false);
    s.probe.Unload();
    s.host.Show(s.probe);
    EXPECT_EQ(s.probe["Label1"].Caption(), "Designed caption");
    EXPECT_TRUE(s.probe["Label1"].Visible());
}

TEST(ScriptHost, ModalWindowRunsTheScriptUntilItCloses) {
    Scripted s("click Probe.Label1\nclick Probe.Command1\nclick Probe.Label1\n");
    s.host.Show(s.probe, true);   // returns once EXIT unloads it
    EXPECT_EQ(s.probe.log, "load;activate;click;unload;");
    // The rest of the script is still there for later waits.
    s.host.Show(s.probe);
    s.host.DoEvents();
    EXPECT_EQ(s.probe.log, "load;activate;click;unload;load;activate;click;");
}

TEST(ScriptHost, MessageBoxesPrintOnOneLineAndAnswerOk) {
    std::FILE* out = std::tmpfile();
    ScriptHost host(nullptr, out);
    EXPECT_EQ(host.MsgBox("first\r\nsecond\nthird", MsgButtons::Ok, "Title"), MsgResult::Ok);
    EXPECT_EQ(host.MsgBox("ask", MsgButtons::YesNo, "Q"), MsgResult::Yes);
    std::string text(100, '\0');
    std::rewind(out);
    text.resize(std::fread(text.data(), 1, text.size(), out));
    std::fclose(out);
    EXPECT_EQ(text, "MSGBOX Title|first\\nsecond\\nthird\nMSGBOX Q|ask\n");
}

TEST(HeadlessHost, WaitingForAUserEndsTheProgram) {
    HeadlessHost host;
    Probe probe(host);
    host.Show(probe);
    EXPECT_THROW(host.WaitForEvent(), ProgramEnd);
    EXPECT_FALSE(probe.Loaded());
    EXPECT_EQ(probe.log, "load;activate;unload;");
}

TEST(Palette, ClassicSixteenColours) {
    for (const auto& [index, colour] :
         {std::pair{0, 0x000000u}, {12, 0xFF0000u}, {13, 0xFF00FFu}, {14, 0xFFFF00u}, {15, 0xFFFFFFu}})
        EXPECT_EQ(PaletteColour(index), colour) << index;
    EXPECT_THROW(PaletteColour(16), RuntimeError);
    EXPECT_THROW(PaletteColour(-1), RuntimeError);
}

}  // namespace
}  // namespace ravelo::ui
