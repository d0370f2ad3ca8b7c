// The calculator window: an equation box, a five-line display, one stored
// value, a history of ten stored equations, a step-by-step trace, a help
// text, and two substitution dialogues (one asks a value for every variable
// "v?", one replaces any piece of a recalled equation).
#pragma once

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
    void Flash(std::string_view label, int during, int after);
    void ClearLines(int first, int last);
    ui::Control& Label(int number);

    Program& p_;
    CALCULX::Shared shared_;
    CALCULX::History history_;
    double storedValue_ = 0;
    int storeCounter_ = 0;  // the history slot written last
    std::string picked_;    // the history entry picked from List1
    std::string answer_;    // what Command2 handed over; empty while none
};

}  // namespace windows

// Registers the "calculx" command word, which shows the calculator modal,
// and the calculator window.
void RegisterCalculator(Program& p);

}  // namespace ravelo
