// The calculator window: an equation box, a five-line display, one stored
// value, a history of ten stored equations, a step-by-step trace, a help
// text, and two substitution dialogues (one asks a value for every variable
// "v?", one replaces any piece of a recalled equation).
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "calc/calculx.hpp"
#include "core/program.hpp"
#include "ui/form.hpp"

namespace ravelo {

namespace windows {

class CalcxForm : public ui::Form, private CALCULX::Display {
public:
    static constexpr std::string_view kName = "CalcxForm";
    explicit CalcxForm(Program& p);

    void Form_Load() override;
    void Form_Click() override;

private:
    // CALCULX::Display: Label13 (top) to Label17 (bottom).
    std::string Line(int index) const override;
    void SetLine(int index, std::string text) override;
    void Repaint() override;

    void Calculate();
    void StoreValue();
    void StoreEquation();
    void ShowHelp();
    void RecallValue();
    void RecallEquation();
    void ClearDisplayAndEquation();
    void ToggleTrace();
    void Exit();
    void Accept();

    // The two dialogues; each leaves its result in CurrentEquation.
    void ReplaceDialogue(std::string equation);
    void VariableDialogue(std::string equation);
    void OpenDialogue();
    void CloseDialogue();
    // Waits, processing events, until Command2 hands over an answer.
    std::string WaitForAnswer();

    // A click's feedback: `during` for a quarter of a second, then `after`.
    void Flash(ui::Control& label, int during, int after);
    // Display lines `first` to `last` (0 is Label13).
    void ClearLines(int first, int last);

    Program& p_;
    CALCULX::Shared shared_;
    CALCULX::History history_;
    double storedValue_ = 0;
    int storeCounter_ = 0;  // the history slot written last
    std::string picked_;    // the history entry picked from List1
    std::string answer_;    // what Command2 handed over; empty while none

    // The controls, in creation order.
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
    ui::Control& Label11_;
    ui::Control& Label12_;
    ui::Control& Label13_;
    ui::Control& Label14_;
    ui::Control& Label15_;
    ui::Control& Label16_;
    ui::Control& Label17_;
    ui::Control& Text1_;
    ui::Control& Text2_;
    ui::Control& Command1_;
    ui::Control& Command2_;
    ui::Control& List1_;
    // The display, top line first.
    const std::array<ui::Control*, 5> lines_{&Label13_, &Label14_, &Label15_, &Label16_, &Label17_};
};

}  // namespace windows

// Registers the "calculx" command word, which shows the calculator modal,
// and the calculator window.
void RegisterCalculator(Program& p);

}  // namespace ravelo
