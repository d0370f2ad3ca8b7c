// The pattern every converter window follows: a title, a prompt, a text box
// for the file name and the buttons Convert, Cancel, YES and EXIT. Opened by
// the file converter with a name, the window converts that file at once and
// closes; opened without one, it asks for a name. A format's row of the
// format table gives the window its texts, its reader and whether it divides
// libraries.
#pragma once

#include <string>

#include "convert/formats.hpp"
#include "core/program.hpp"
#include "ui/form.hpp"

namespace ravelo::windows {

class ConverterWindow final : public ui::Form {
public:
    ConverterWindow(Program& p, const formats::Format& format);

    // The file to convert, set by the file converter before the window is
    // shown.
    std::string fileName;

    void Form_Load() override;
    void Form_Activate() override;
    void Form_Unload(int& cancel) override;

private:
    // Sets the window up and, when a name is present, converts it (a
    // library first divided into its entries, each converted in turn).
    void InitConverter();
    void ConvertFile(const std::string& name);
    // After a conversion: hides the buttons and, for a name the user typed,
    // offers YES and EXIT with the window's question.
    void AskConvertAnother();
    // The captions and buttons as at the start.
    void SetUpControls();
    // The name taken from `fileName` (quotes dropped, trimmed, shown in
    // Text1); false, with the prompt shown, when there is none.
    bool TakeFileName();
    // Divides the file at the format's library marker (SplitLibraryFile);
    // two or more entries are converted from their own files NAME_i plus
    // the entry extension, with a 3-second pause after each, and the
    // library is kept under a ".lib" name.
    void ConvertLibrary();
    // The end of a conversion the file converter started: "Done" on its
    // button, the pause, its prompt back, its file list refreshed, and this
    // window closed.
    void FinishConversion();
    // A text in the window's progress label.
    void ShowProgress(const std::string& text);

    Program& p_;
    const formats::Format& format_;
    formats::ReaderMemory memory_;
    int startedWithFile_ = 0;

    // The controls, in creation order.
    ui::Control& Command1_;
    ui::Control& Command2_;
    ui::Control& Command3_;
    ui::Control& Command4_;
    ui::Control& Text1_;
    ui::Control& Label1_;
    ui::Control& Label2_;
    ui::Control& Label3_;
    ui::Control& Label4_;
    ui::Control& Label5_;
    ui::Control& Label6_;
};

}  // namespace ravelo::windows
