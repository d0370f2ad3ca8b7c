// The converter window pattern, once for every format.
#include "convert/windows/converter_window.hpp"

#include "convert/filcvrt.hpp"
#include "convert/windows/fileconv.hpp"
#include "runtime/text.hpp"
#include "core/shared.hpp"
#include "ui/host.hpp"

namespace ravelo::windows {

using ui::ControlKind;

ConverterWindow::ConverterWindow(Program& p, const formats::Format& format)
    : Form(p.ui, std::string(format.window), std::string(format.texts.caption)),
      p_(p),
      format_(format),
      Command1_(Add("Command1", ControlKind::Button, "Convert")),
      Command2_(Add("Command2", ControlKind::Button, "Cancel")),
      Command3_(Add("Command3", ControlKind::Button, "YES")),
      Command4_(Add("Command4", ControlKind::Button, "EXIT")),
      Text1_(Add("Text1", ControlKind::TextBox)),
      Label1_(Add("Label1", ControlKind::Label, std::string(format_.texts.title))),
      Label2_(Add("Label2", ControlKind::Label, VersionLine())),
      Label3_(Add("Label3", ControlKind::Label)),
      Label4_(Add("Label4", ControlKind::Label)),
      Label5_(Add("Label5", ControlKind::Label)),
      Label6_(Add("Label6", ControlKind::Label)) {
    Command1_.onClick = [this] {
        fileName = Trim(Trim(Text1_.Text()));
        // A typed name is converted as it stands, without the cleaning pass.
        ConvertFile(fileName);
        AskConvertAnother();
    };
    Command2_.onClick = [this] {
        fileName.clear();
        Text1_.SetText("");
        SetFocus(Text1_.Name());
    };
    Command3_.onClick = [this] {
        SetFocus(Text1_.Name());
        InitConverter();
    };
    Command4_.onClick = [this] { Unload(); };
}

// A start from the command line with a library count of exactly 1 converts
// on loading; every other start converts when the window becomes active,
// and only with a count of 0 (a count of 2 to 9 converts nothing here).
void ConverterWindow::Form_Load() {
    if (p_.LibraryCount == 1) {
        startedWithFile_ = 0;
        InitConverter();
    }
}

void ConverterWindow::Form_Activate() {
    for (ui::Control* label : {&Label2_, &Label3_, &Label4_, &Label5_, &Label6_}) label->SetCaption("");
    Text1_.SetText("");
    if (p_.LibraryCount == 0) {
        startedWithFile_ = 0;
        InitConverter();
    }
}

// Files are closed by their owners; the name does not outlive the window.
void ConverterWindow::Form_Unload(int& cancel) {
    (void)cancel;
    fileName.clear();
}

void ConverterWindow::InitConverter() {
    SetUpControls();
    if (!TakeFileName()) return;
    FilCvrt::PrepareInputFile(p_, fileName);
    if (format_.libraryMarker.empty()) {
        ConvertFile(fileName);
    } else {
        ConvertLibrary();
    }
    AskConvertAnother();
    FinishConversion();
}

void ConverterWindow::ConvertFile(const std::string& name) {
    format_.read(p_, name, memory_, [this](const std::string& text) { ShowProgress(text); });
}

void ConverterWindow::SetUpControls() {
    Label1_.SetCaption(std::string(format_.texts.title));
    Label2_.SetCaption(VersionLine());
    for (ui::Control* label : {&Label3_, &Label4_, &Label5_, &Label6_}) label->SetCaption("");
    Text1_.SetText("");
    for (ui::Control* button : {&Command1_, &Command2_, &Command4_}) button->SetVisible(true);
    Command3_.SetVisible(false);
    startedWithFile_ = 0;
}

bool ConverterWindow::TakeFileName() {
    if (fileName.empty()) {
        Label3_.SetCaption(std::string(format_.texts.prompt));
        return false;
    }
    startedWithFile_ = 1;
    // A quoted path from the command line loses its quotes.
    DropQuotes(fileName);
    fileName = Trim(fileName);
    Text1_.SetText(fileName);
    return true;
}

void ConverterWindow::AskConvertAnother() {
    for (ui::Control* button : {&Command1_, &Command2_, &Command3_, &Command4_}) button->SetVisible(false);
    Label4_.SetCaption("");
    if (startedWithFile_ != 1) {
        Command3_.SetVisible(true);
        Command4_.SetVisible(true);
        SetFocus(Command3_.Name());
        Label5_.SetCaption(std::string(format_.texts.question));
    }
    p_.ui.Refresh(*this);
}

void ConverterWindow::FinishConversion() {
    // The pause is skipped within a library job.
    FileConv::Of(p_).ShowDone(p_.LibraryCount == 0);
    // A window that converted the file the converter handed it closes, so
    // that the next file finds it afresh.
    if (startedWithFile_ == 1 && Loaded()) Unload();
}

void ConverterWindow::ConvertLibrary() {
    const std::string extension =
        format_.entryExtension.empty() ? TextFrom(fileName, ".") : std::string(format_.entryExtension);
    std::int32_t count = 0;
    FilCvrt::SplitLibraryFile(p_, count, fileName, std::string(format_.libraryMarker), extension,
                              [this](const std::string& text) { ShowProgress(text); });
    if (count < 2) {
        ConvertFile(fileName);
        return;
    }
    const std::string library = fileName;
    Text1_.SetText("Separating Library into Files.");
    for (std::int32_t i = 1; i <= count; ++i) {
        ConvertFile(DropLast(library, 4) + "_" + std::to_string(i) + extension);
        WaitSeconds(p_, 3.0);
    }
    // Every "." of the full name, folders included, becomes "_".
    FilCvrt::MoveFile(p_, library, Replace(library, ".", "_") + ".lib");
}

void ConverterWindow::ShowProgress(const std::string& text) {
    Label4_.SetCaption(text);
    p_.ui.Refresh(*this);
}

}  // namespace ravelo::windows
