// The window of the molecule log copier: two clickable labels, one for each
// direction of the copy, a message line and Exit.
#pragma once

#include <string>
#include <string_view>

#include "mollog/logtohtm.hpp"
#include "core/program.hpp"
#include "ui/form.hpp"

namespace ravelo {

// Registers the command word "logtohtm" and the window LogHtmForm1.
void RegisterMolLog(Program& p);

}  // namespace ravelo

namespace ravelo::LogToHtm {

class LogHtmForm1 : public ui::Form {
public:
    static constexpr std::string_view kName = "LogHtmForm1";
    explicit LogHtmForm1(Program& p);

    // Set by the launcher before the window is shown.
    std::string mode = "new";
    RecordBuffer record;

    void Form_Load() override;
    void Form_Unload(int& cancel) override;
    void Form_KeyPress(int& keyAscii) override;

private:
    // Checks the installation and the log, and makes the HTML pages.
    void StartUp();
    void ShowMessage(std::string text);

    Program& p_;
    // The header of a new index, until it is written.
    std::string indexHeader_;

    // The controls, in creation order.
    ui::Control& Label1_;
    ui::Control& Label2_;
    ui::Control& Label3_;
    ui::Control& Label4_;
    ui::Control& Command2_;
};

}  // namespace ravelo::LogToHtm
