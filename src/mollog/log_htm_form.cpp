// The LogHtmForm1 window.
#include "mollog/log_htm_form.hpp"

#include <memory>

#include "core/shared.hpp"  // for CheckInstallation, FileExists
#include "ui/host.hpp"

namespace ravelo::LogToHtm {
namespace {

constexpr std::string_view kDone = "The task was completed successfully.";

using ui::ControlKind;

// The command word's launcher: a fresh record buffer, the mode word from
// the argument, and the window shown.
void Launch(Program& p) {
    auto& window = p.Window<LogHtmForm1>(LogHtmForm1::kName);
    window.record = RecordBuffer{};
    window.mode = ModeWord(p.CommandTail);
    p.ui.Show(window, false);
}

}  // namespace

LogHtmForm1::LogHtmForm1(Program& p)
    : Form(p.ui, std::string(kName), "RAVELO - molecule.log <> molecule.htm"),
      p_(p),
      Label1_(Add("Label1", ControlKind::Label)),
      Label2_(Add("Label2", ControlKind::Label)),
      Label3_(Add("Label3", ControlKind::Label, "Move Data from Molecule.Log to Molecule.Htm")),
      Label4_(Add("Label4", ControlKind::Label, "Move Data from Molecule.Htm to Molecule.Log")),
      Command2_(Add("Command2", ControlKind::Button, "Exit")) {
    Label3_.onClick = [this] {
        CopyLogToHtml(p_, mode, record, indexHeader_);
        ShowMessage(std::string(kDone));
    };
    Label4_.onClick = [this] {
        WritePendingHeader(p_, indexHeader_);
        CopyHtmlToLog(p_, mode, record);
        ShowMessage(std::string(kDone));
    };
    // Every file is closed by the copy that opened it.
    Command2_.onClick = [this] { Unload(); };
}

void LogHtmForm1::Form_Load() {
    Label1_.SetCaption("Click the appropriate label to copy data from one file type to the other.");
    Label2_.SetCaption("");
    Label2_.SetVisible(false);
    StartUp();
}

// A new index that no copy has filled is left with its header.
void LogHtmForm1::Form_Unload(int& cancel) {
    (void)cancel;
    WritePendingHeader(p_, indexHeader_);
}

// A key press only ends a wait that is watching for one.
void LogHtmForm1::Form_KeyPress(int& keyAscii) {
    (void)keyAscii;
    p_.WaitFlag = true;
}

void LogHtmForm1::StartUp() {
    if (p_.InstallDrive.empty()) CheckInstallation(p_);
    Label2_.SetVisible(true);
    std::string log = LogPath(p_);
    const bool logPresent = FileExists(p_, log);
    // The pages are made even without a log; the actions stay clickable and
    // a copy from a missing log then fails when it opens the file.
    indexHeader_ = MakeHtmlHeaders(p_);
    Label2_.SetCaption(logPresent ? "Ready to proceed"
                                  : "The file MOLECULE.LOG is missing.  End the program.");
}

void LogHtmForm1::ShowMessage(std::string text) {
    Label2_.SetVisible(true);
    Label2_.SetCaption(std::move(text));
    p_.ui.Refresh(*this);
}

}  // namespace ravelo::LogToHtm

namespace ravelo {

void RegisterMolLog(Program& p) {
    p.utilities["logtohtm"] = LogToHtm::Launch;
    p.RegisterWindow(std::string(LogToHtm::LogHtmForm1::kName),
                     [](Program& program) { return std::make_unique<LogToHtm::LogHtmForm1>(program); });
}

}  // namespace ravelo
