// The converter window pattern, once for every format.
#include "convert/windows/converter_window.hpp"

#include "convert/filcvrt.hpp"
#include "convert/windows/fileconv.hpp"
#include "runtime/text.hpp"
#include "core/shared.hpp"
#include "ui/host.hpp"

namespace ravelo::windows {

ConverterWindow::ConverterWindow(Program& p, const formats::Format& format)
    : Form(p.ui, std::string(format.window), std::string(format.texts.caption)), p_(p), format_(format) {
    using ui::ControlKind;
    Add("Command1", ControlKind::Button, "Convert").onClick = [this] {
        fileName = Trim(Trim((*this)["Text1"].Text()));
        // A typed name is converted as it stands, without the cleaning pass.
        ConvertFile(fileName);
        AskConvertAnother();
    };
    Add("Command2", ControlKind::Button, "Cancel").onClick = [this] {
        fileName.clear();
        (*this)["Text1"].SetText("");
        SetFocus("Text1");
    };
    Add("Command3", ControlKind::Button, "YES").onClick = [this] {
        SetFocus("Text1");
        InitConverter();
    };
    Add("Command4", ControlKind::Button, "EXIT").onClick = [this] { Unload(); };
    Add("Text1", ControlKind::TextBox);
    Add("Label1", ControlKind::Label, std::string(format_.texts.title));
    Add("Label2", ControlKind::Label, VersionLine());
    for (const char* label : {"Label3", "Label4", "Label5", "Label6"}) Add(label, ControlKind::Label);
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
    for (const char* label : {"Label2", "Label3", "Label4", "Label5", "Label6"}) (*this)[label].SetCaption("");
    (*this)["Text1"].SetText("");
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
    (*this)["Label1"].SetCaption(std::string(format_.texts.title));
    (*this)["Label2"].SetCaption(VersionLine());
    for (const char* label : {"Label3", "Label4", "Label5", "Label6"}) (*this)[label].SetCaption("");
    (*this)["Text1"].SetText("");
    for (const char* button : {"Command1", "Command2", "Command4"}) (*this)[button].SetVisible(true);
    (*this)["Command3"].SetVisible(false);
    startedWithFile_ = 0;
}

bool ConverterWindow::TakeFileName() {
    if (fileName.empty()) {
        (*this)["Label3"].SetCaption(std::string(format_.texts.prompt));
        return false;
    }
    startedWithFile_ = 1;
    // A quoted path from the command line loses its quotes.
    if (Contains(fileName, "\"")) fileName = DropFirst(DropLast(fileName, 1));
    fileName = Trim(fileName);
    (*this)["Text1"].SetText(fileName);
    return true;
}

void ConverterWindow::AskConvertAnother() {
    for (const char* button : {"Command1", "Command2", "Command3", "Command4"}) (*this)[button].SetVisible(false);
    (*this)["Label4"].SetCaption("");
    if (startedWithFile_ != 1) {
        (*this)["Command3"].SetVisible(true);
        (*this)["Command4"].SetVisible(true);
        SetFocus("Command3");
        (*this)["Label5"].SetCaption(std::string(format_.texts.question));
    }
    p_.ui.Refresh(*this);
}

void ConverterWindow::FinishConversion() {
    FileConv& converter = FileConv::Of(p_);
    converter["Command1"].SetCaption("Done");
    p_.ui.Refresh(converter);
    if (p_.LibraryCount == 0) WaitSeconds(p_, 1.0);
    converter["Command1"].SetCaption(p_.SelectFilePrompt);
    converter.RefreshFiles();
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
    (*this)["Text1"].SetText("Separating Library into Files.");
    for (std::int32_t i = 1; i <= count; ++i) {
        ConvertFile(DropLast(library, 4) + "_" + std::to_string(i) + extension);
        WaitSeconds(p_, 3.0);
    }
    // Every "." of the full name, folders included, becomes "_".
    FilCvrt::MoveFile(p_, library, Replace(library, ".", "_") + ".lib");
}

void ConverterWindow::ShowProgress(const std::string& text) {
    (*this)["Label4"].SetCaption(text);
    p_.ui.Refresh(*this);
}

}  // namespace ravelo::windows
