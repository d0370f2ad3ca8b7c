// The main window: a menu of clickable labels, one per utility.
#pragma once

#include <string>
#include <string_view>

#include "core/program.hpp"
#include "ui/form.hpp"

namespace ravelo {

class RaveloUtils : public ui::Form {
public:
    static constexpr std::string_view kName = "RaveloUtils";
    explicit RaveloUtils(Program& p);

    void Form_Load() override;
    void Form_Unload(int& cancel) override;

    // Shows a notice in the place of the version line.
    void ShowNotice(std::string text) { Label10_.SetCaption(std::move(text)); }

private:
    // Opens the utility of a command word, as the dispatcher does.
    void Open(std::string_view word);

    Program& p_;

    // The controls, in creation order: the title, the menu (Label2 to
    // Label9), the version line and EXIT.
    ui::Control& Label1_;
    ui::Control& Label2_;
    ui::Control& Label3_;
    ui::Control& Label4_;
    ui::Control& Label5_;
    ui::Control& Label6_;
    ui::Control& Label7_;
    ui::Control& Label8_;
    ui::Control& Label9_;
    ui::Control& Label10_;
    ui::Control& Command1_;
};

}  // namespace ravelo
