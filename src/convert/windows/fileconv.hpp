// The file converter's window: drive, folder and file lists to pick a file,
// and the button that converts it.
#pragma once

#include <string>

#include "startup/program.hpp"
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

private:
    void ShowFolder(const std::string& folder);

    Program& p_;
};

}  // namespace ravelo::windows
