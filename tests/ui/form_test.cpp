// The window model and the script host: lifecycle, events, dumps.
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
        Control& dir = Add("Dir1", ControlKind::DirList);
        dir.onNavigate = [this](int index) { log += "navigate" + std::to_string(index) + ";"; };
        dir.onChange = [this] { log += "dirchange;"; };
        Add("Command1", ControlKind::Button, "EXIT").onClick = [this] { Unload(); };
    }
    void Form_Load() override { log += "load;"; }
    void Form_Activate() override { log += "activate;"; }
    void Form_Unload(int&) override { log += "unload;"; }
    void Form_Click() override { log += "formclick;"; }
    std::string log;
};

class ScriptHostTest : public testing::Test {
protected:
    void Start(const std::string& script) {
        out = open_memstream(&buffer, &size);
        host = std::make_unique<ScriptHost>(std::make_unique<std::istringstream>(script), out);
        probe = std::make_unique<Probe>(*host);
        host->windowProvider = [this](std::string_view name) -> Form* {
            return name == "Probe" ? probe.get() : nullptr;
        };
    }
    void TearDown() override {
        probe.reset();
        host.reset();
        if (out) std::fclose(out);
        std::free(buffer);
    }
    std::string Output() {
        std::fflush(out);
        return std::string(buffer, size);
    }
    // Runs the host's loop until the script ends the program.
    void RunToEnd() {
        try {
            for (;;) host->WaitForEvent();
        } catch (const ProgramEnd&) {
        }
    }

    char* buffer = nullptr;
    std::size_t size = 0;
    std::FILE* out = nullptr;
    std::unique_ptr<ScriptHost> host;
    std::unique_ptr<Probe> probe;
};

TEST_F(ScriptHostTest, CommandsReachControlsAndFireTheirEvents) {
    Start("click Probe.Label1\n"
          "text Probe.Text1 two  words \n"
          "text Probe.Text1 two  words \n"
          "key Probe.Text1 13\n"
          "pick Probe.List1 1\n"
          "pick Probe.Dir1 0\n"
          "click Probe\n");
    host->Show(*probe);
    (*probe)["List1"].AddItem("first");
    (*probe)["List1"].AddItem("second");
    (*probe)["Dir1"].AddItem("C:\\");
    RunToEnd();
    // Typing fires the change event even when the text stays the same.
    EXPECT_EQ(probe->log,
              "load;activate;click;change:two  words ;change:two  words ;key13;picked:second;"
              "navigate0;dirchange;formclick;unload;");
    EXPECT_FALSE(probe->Loaded());
}

TEST_F(ScriptHostTest, DumpListsControlsInCreationOrder) {
    Start("dump Probe\n");
    host->Show(*probe);
    (*probe)["Label1"].SetBackColour(PaletteColour(12));
    (*probe)["Text1"].SetVisible(false);
    (*probe)["List1"].AddItem("a");
    (*probe)["List1"].AddItem("b");
    RunToEnd();
    EXPECT_EQ(Output(),
              "Probe.Label1\t1\tFF0000\tDesigned caption\n"
              "Probe.Text1\t0\t-\t\n"
              "Probe.List1\t1\t-\ta|b\n"
              "Probe.Dir1\t1\t-\t\n"
              "Probe.Command1\t1\t-\tEXIT\n"
              "END\n");
}

TEST_F(ScriptHostTest, WindowsThatAreNotOpenIgnoreCommandsUntilShown) {
    Start("click Probe.Label1\nshow Probe\nclick Probe.Label1\nclose Probe\nclick Probe.Label1\n");
    RunToEnd();
    EXPECT_EQ(probe->log, "load;activate;click;unload;");
}

TEST_F(ScriptHostTest, ProgramAssignmentsFireChangeOnlyOnChangesAndReloadingRestoresTheDesign) {
    Start("");
    host->Show(*probe);
    for (const char* text : {"", "x", "x"}) (*probe)["Text1"].SetText(text);
    EXPECT_EQ(probe->log, "load;activate;change:x;");
    (*probe)["Label1"].SetCaption("changed");
    (*probe)["Label1"].SetVisible(false);
    probe->Unload();
    host->Show(*probe);
    EXPECT_EQ((*probe)["Label1"].Caption(), "Designed caption");
    EXPECT_TRUE((*probe)["Label1"].Visible());
}

TEST_F(ScriptHostTest, ModalWindowRunsTheScriptUntilItCloses) {
    Start("click Probe.Label1\nclick Probe.Command1\nclick Probe.Label1\n");
    host->Show(*probe, true);   // returns once EXIT unloads it
    EXPECT_EQ(probe->log, "load;activate;click;unload;");
    // The rest of the script is still there for later waits.
    host->Show(*probe);
    host->DoEvents();
    EXPECT_EQ(probe->log, "load;activate;click;unload;load;activate;click;");
}

TEST_F(ScriptHostTest, MessageBoxesPrintOnOneLineAndAnswerOk) {
    Start("");
    EXPECT_EQ(host->MsgBox("first\r\nsecond\nthird", MsgButtons::Ok, "Title"), MsgResult::Ok);
    EXPECT_EQ(host->MsgBox("ask", MsgButtons::YesNo, "Q"), MsgResult::Yes);
    EXPECT_EQ(Output(), "MSGBOX Title|first\\nsecond\\nthird\nMSGBOX Q|ask\n");
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
    for (const auto& [index, colour] : {std::pair{0, 0x000000u}, {12, 0xFF0000u}, {13, 0xFF00FFu}, {14, 0xFFFF00u}})
        EXPECT_EQ(PaletteColour(index), colour) << index;
    EXPECT_THROW(PaletteColour(16), RuntimeError);
}

}  // namespace
}  // namespace ravelo::ui
