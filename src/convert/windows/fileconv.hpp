// The file converter: the "fileconv" job (one file, a wildcard, or the
// FileConv window), the safe renaming of the input, the choice of the
// converter window by the file's extension, and the FileConv window with
// its drive, folder and file lists and the button that converts the file
// picked.
#pragma once

#include <string>
#include <string_view>

#include "core/program.hpp"
#include "ui/form.hpp"

namespace ravelo::windows {

class FileConv : public ui::Form {
public:
    static constexpr std::string_view kName = "FileConv";
    explicit FileConv(Program& p);

    // The program's FileConv window, loaded (not shown) when it was not:
    // the driver and the converter windows set its button's caption.
    static FileConv& Of(Program& p);

    void Form_Load() override;
    void Form_Activate() override;

    // Lists the files of the file list's folder again.
    void RefreshFiles();
    // "Processing The File" on the button.
    void ShowProcessing();
    // A conversion is over: "Done" on the button (for a second when
    // `pause`), then its prompt again, and the files listed again.
    void ShowDone(bool pause = false);
    // A text in the message line.
    void ShowMessage(std::string text);

private:
    void ShowFolder(const std::string& folder);

    Program& p_;

    // The controls, in creation order.
    ui::Control& Drive1_;
    ui::Control& Dir1_;
    ui::Control& File1_;
    ui::Control& Command1_;
    ui::Control& Command6_;
    ui::Control& Label2_;
    ui::Control& Label1_;
};

}  // namespace ravelo::windows

namespace ravelo {

// The "fileconv" command: converts the file (or every match of a wildcard)
// named by CommandTail, then ends the program; with no tail it shows the
// FileConv window.
void FileConvStart(Program& p);

// Converts conversion.file (or the file CommandTail names) by its extension: the
// file is first renamed to a safe name, then its converter window is shown.
void ConvertByType(Program& p);

// The name of the converter window for a three-letter extension, or empty
// when no window of this build converts it.
std::string ConverterWindowFor(const Program& p, std::string_view extension);

// Registers the "fileconv" command word, the file types and the converter's
// windows.
void RegisterConverter(Program& p);

}  // namespace ravelo
