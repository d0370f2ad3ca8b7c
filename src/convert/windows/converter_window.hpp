// The pattern every converter window follows: a title, a prompt, a text box
// for the file name and the buttons Convert, Cancel, YES and EXIT. Opened by
// the file converter with a name, the window converts that file at once and
// closes; opened without one, it asks for a name. Each format's window gives
// only its texts and its reader.
#pragma once

#include <string>

#include "startup/program.hpp"
#include "ui/form.hpp"

namespace ravelo::windows {

struct ConverterTexts {
    std::string caption;    // the window's caption
    std::string title;      // Label1
    std::string prompt;     // Label3 when no name is given
    std::string question;   // Label5 after an interactive conversion
};

class ConverterWindow : public ui::Form {
public:
    ConverterWindow(Program& p, std::string name, ConverterTexts texts);

    // The file to convert, set by the file converter before the window is
    // shown.
    std::string fileName;

    void Form_Load() override;
    void Form_Activate() override;
    void Form_Unload(int& cancel) override;

protected:
    // Sets the window up and, when a name is present, converts it.
    virtual void InitConverter();
    // The format's reader.
    virtual void ConvertFile(const std::string& name) = 0;
    // After a conversion: hides the buttons and, for a name the user typed,
    // offers YES and EXIT with the window's question.
    void AskConvertAnother();

    // The steps of InitConverter that the library windows share:
    // the captions and buttons as at the start;
    void SetUpControls();
    // the name taken from `fileName` (quotes dropped, trimmed, shown in
    // Text1); false, with the prompt shown, when there is none;
    bool TakeFileName();
    // the end of a conversion the file converter started: "Done" on its
    // button, the pause, its prompt back, its file list refreshed, and this
    // window closed.
    void FinishConversion();
    // A text in the window's progress label.
    void ShowProgress(const std::string& text);
    // InitConverter for files that may hold several entries: the file is
    // divided at `marker` (SplitLibraryFile), each entry converted from its
    // own file NAME_i + extension with a 3-second pause after each, and the
    // library kept under a ".lib" name. An empty extension is the name's own,
    // from its first ".".
    void InitLibraryConverter(const std::string& marker, std::string extension);

    Program& p_;
    int startedWithFile_ = 0;

private:
    ConverterTexts texts_;
};

}  // namespace ravelo::windows
