// The window of the database transfer: one button that first counts the log
// (BEGIN) and then transfers its new records (GO), EXIT, and the lines that
// report the counts.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/program.hpp"
#include "moldb/updatmol.hpp"
#include "ui/form.hpp"

namespace ravelo {

// Registers the command word "updtmol" and the window UpdtMolForm1.
void RegisterMolDb(Program& p);

}  // namespace ravelo

namespace ravelo::UpdatMol {

// A colour as the platform stores it, blue-green-red, in the window model's
// red-green-blue order.
constexpr ui::Colour FromStoredColour(std::uint32_t bgr) {
    return ((bgr & 0xFF) << 16) | (bgr & 0xFF00) | ((bgr >> 16) & 0xFF);
}
inline constexpr ui::Colour kRed = FromStoredColour(0x0000FF);          // work under way
inline constexpr ui::Colour kLightYellow = FromStoredColour(0xC0FFFF);  // waiting for the user

class UpdtMolForm1 : public ui::Form, private TransferView {
public:
    static constexpr std::string_view kName = "UpdtMolForm1";
    explicit UpdtMolForm1(Program& p);

    void Form_Load() override;

private:
    void SetMessage(int line, std::string text) override;
    void MarkWaiting() override;
    std::string Button() override;
    void SetButton(std::string caption) override;
    void HideButton() override;
    void Repaint() override;
    // Label1 to Label6.
    std::array<ui::Control*, 6> Labels();

    Program& p_;

    // The controls, in creation order.
    ui::Control& Command1_;
    ui::Control& Command2_;
    ui::Control& Label1_;
    ui::Control& Label2_;
    ui::Control& Label3_;
    ui::Control& Label4_;
    ui::Control& Label5_;
    ui::Control& Label6_;
};

}  // namespace ravelo::UpdatMol
