// The calculator window.
#include "calc/calcx_form.hpp"

#include <cstdint>

#include "runtime/error.hpp"
#include "runtime/number.hpp"
#include "runtime/text.hpp"
#include "ui/host.hpp"

namespace ravelo {
namespace windows {
namespace {

constexpr int kLightRed = 12;
constexpr int kLightMagenta = 13;
constexpr int kYellow = 14;

using ui::ControlKind;

constexpr const char* kHelpLines[] = {
    "The mathematical expression to be evaluated must be explicitly delimited by using brackets",
    "to enclose each discrete group of operations. Trigonometric and logarithmic functions should",
    "be isolated within brackets when in equations.  Replacable variables must have form 'V?',",
    "where '?' is any single alphanumeric character.",
};

// The label flash: a busy wait by the clock that processes no events.
// Scaled with the program's waits; 0 skips it.
void BusyWait(Program& p, double seconds) {
    const double duration = seconds * 1000 * p.waitScale;
    if (duration <= 0) return;
    const std::uint32_t start = p.clock.Millis();
    while (!(p.clock.Millis() - start > duration)) p.clock.Idle();
}

}  // namespace

CalcxForm::CalcxForm(Program& p)
    : Form(p.ui, std::string(kName), "The Calculator"),
      p_(p),
      Label1_(Add("Label1", ControlKind::Label, "The Scientific Calculator and Math Expression Evaluator")),
      Label2_(Add("Label2", ControlKind::Label, "pi  ( )  ^  *  /  +  -  sin  tan  cos  atn  log")),
      Label3_(Add("Label3", ControlKind::Label, "Store Value")),
      Label4_(Add("Label4", ControlKind::Label, "Store Equation")),
      Label5_(Add("Label5", ControlKind::Label, "Help")),
      Label6_(Add("Label6", ControlKind::Label, "Recall Value")),
      Label7_(Add("Label7", ControlKind::Label, "Recall Equation")),
      Label8_(Add("Label8", ControlKind::Label, "Clear")),
      Label9_(Add("Label9", ControlKind::Label, "EXIT")),
      Label10_(Add("Label10", ControlKind::Label, "Trace")),
      Label11_(Add("Label11", ControlKind::Label, "Math Equation")),
      Label12_(Add("Label12", ControlKind::Label)),
      Label13_(Add("Label13", ControlKind::Label)),
      Label14_(Add("Label14", ControlKind::Label)),
      Label15_(Add("Label15", ControlKind::Label)),
      Label16_(Add("Label16", ControlKind::Label)),
      Label17_(Add("Label17", ControlKind::Label)),
      Text1_(Add("Text1", ControlKind::TextBox)),
      Text2_(Add("Text2", ControlKind::TextBox)),
      Command1_(Add("Command1", ControlKind::Button, "Calculate")),
      Command2_(Add("Command2", ControlKind::Button, "Accept")),
      List1_(Add("List1", ControlKind::ListBox)) {
    Label1_.onClick = [this] { Label13_.SetCaption(VersionLine()); };
    Label3_.onClick = [this] { StoreValue(); };
    Label4_.onClick = [this] { StoreEquation(); };
    Label5_.onClick = [this] { ShowHelp(); };
    Label6_.onClick = [this] { RecallValue(); };
    Label7_.onClick = [this] { RecallEquation(); };
    Label8_.onClick = [this] { ClearDisplayAndEquation(); };
    Label9_.onClick = [this] { Exit(); };
    Label10_.onClick = [this] { ToggleTrace(); };

    // An edited equation is no longer the one calculated: it cannot be stored.
    Text1_.onChange = [this] { Label4_.SetVisible(false); };
    Text1_.onKeyPress = [this](int& keyAscii) {
        if (keyAscii == 13) Calculate();
    };
    Command1_.onClick = [this] { Calculate(); };
    Command2_.onClick = [this] { Accept(); };
    List1_.onClick = [this] {
        const int index = List1_.state.listIndex;
        if (index >= 0 && index < static_cast<int>(history_.size()))
            picked_ = history_[static_cast<std::size_t>(index)];  // as the history holds it now
    };
}

void CalcxForm::Form_Load() {
    Label1_.SetCaption("The Scientific Calculator and Math Expression Evaluator");
    Label1_.SetBackColour(ui::PaletteColour(kLightMagenta));
    Label2_.SetCaption("pi  ( )  ^  *  /  +  -  sin  tan  cos  atn  log");
    Label2_.SetBackColour(ui::PaletteColour(kLightRed));
    for (ui::Control* label : {&Label3_, &Label4_, &Label5_, &Label6_, &Label7_, &Label8_, &Label10_})
        label->SetBackColour(ui::PaletteColour(kYellow));
    Label9_.SetBackColour(ui::PaletteColour(kLightRed));
    for (ui::Control* control : {&List1_, &Label4_, &Text2_, &Label12_, &Command2_})
        control->SetVisible(false);
    Text1_.SetText("");
    ClearLines(0, 4);
}

// A click on the window's background clears the display.
void CalcxForm::Form_Click() { ClearLines(0, 4); }

// The display has lines 0 to 4; reading past them gives nothing, writing
// past them is error 9.
std::string CalcxForm::Line(int index) const {
    return index >= 0 && index < static_cast<int>(lines_.size()) ? lines_[static_cast<std::size_t>(index)]->Caption()
                                                                  : std::string();
}

void CalcxForm::SetLine(int index, std::string text) {
    if (index < 0 || index >= static_cast<int>(lines_.size())) Raise(kSubscript);
    lines_[static_cast<std::size_t>(index)]->SetCaption(std::move(text));
}

void CalcxForm::Repaint() { p_.ui.Refresh(*this); }

void CalcxForm::ClearLines(int first, int last) {
    for (int line = first; line <= last; ++line) SetLine(line, "");
}

void CalcxForm::Flash(ui::Control& label, int during, int after) {
    label.SetBackColour(ui::PaletteColour(during));
    Repaint();
    BusyWait(p_, 0.25);
    label.SetBackColour(ui::PaletteColour(after));
    Repaint();
}

void CalcxForm::Calculate() {
    const std::string typed = Trim(Text1_.Text());
    if (typed.size() < 3) return;
    // Only an equation with a digit 1 to 9 before its last two characters
    // is calculated, so "pi*2" or "atn(1)" are not: bracket them, or put a
    // number in front.
    bool hasDigit = false;
    for (std::size_t i = 0; i + 2 < typed.size(); ++i)
        hasDigit = hasDigit || (typed[i] >= '1' && typed[i] <= '9');
    if (!hasDigit) return;

    shared_.CurrentEquation = LCase(typed);
    Text1_.SetText(shared_.CurrentEquation);
    history_[0] = shared_.CurrentEquation;
    Label4_.SetVisible(true);
    if (Contains(shared_.CurrentEquation, "v")) VariableDialogue(shared_.CurrentEquation);

    std::string answer;
    CALCULX::EvaluateExpression(p_, shared_, *this, 0, answer, history_);
    SetFocus(Text1_.Name());
}

void CalcxForm::StoreValue() {
    Flash(Label3_, kLightRed, kYellow);
    storedValue_ = shared_.LastAnswer;
}

void CalcxForm::StoreEquation() {
    Flash(Label4_, kLightRed, kYellow);
    // Ten slots; the eleventh store overwrites the oldest, slot 1.
    if (++storeCounter_ == 11) storeCounter_ = 1;
    history_[static_cast<std::size_t>(storeCounter_)] = history_[0];
    List1_.Clear();
    for (const std::string& equation : history_) List1_.AddItem(equation);
}

void CalcxForm::ShowHelp() {
    // The one label that flashes the other way round, and stays light red.
    Flash(Label5_, kYellow, kLightRed);
    ClearLines(0, 3);
    for (int line = 0; line < 4; ++line) SetLine(line, kHelpLines[line]);
}

void CalcxForm::RecallValue() {
    Flash(Label6_, kLightRed, kYellow);
    ClearLines(0, 4);
    Label13_.SetCaption(NumText(storedValue_));
}

void CalcxForm::RecallEquation() {
    Flash(Label7_, kLightRed, kYellow);
    if (history_[0].empty()) return;
    ClearLines(0, 4);
    List1_.SetVisible(true);
    SetFocus(List1_.Name());
    picked_.clear();
    Repaint();
    // A minute to pick a line, by the clock and not scaled: it waits for the
    // user, not for effect.
    const std::uint32_t start = p_.clock.Millis();
    while (picked_.empty() && p_.clock.Millis() - start <= 60000) p_.DoEvents();
    List1_.SetVisible(false);
    if (picked_.empty()) return;
    if (Contains(picked_, "v")) {
        VariableDialogue(picked_);
    } else {
        ReplaceDialogue(picked_);
    }
}

void CalcxForm::ClearDisplayAndEquation() {
    Flash(Label8_, kLightRed, kYellow);
    ClearLines(0, 4);
    Text1_.SetText("");
    SetFocus(Text1_.Name());
}

void CalcxForm::ToggleTrace() {
    Flash(Label10_, kLightRed, kYellow);
    if (shared_.TraceFlag != "T") {
        shared_.TraceFlag = "T";
        Label10_.SetBackColour(ui::PaletteColour(kLightRed));  // red while tracing
    } else {
        shared_.TraceFlag = "F";
        Label10_.SetBackColour(ui::PaletteColour(kYellow));
    }
}

void CalcxForm::Exit() {
    Flash(Label9_, kLightRed, kYellow);
    Unload();
}

void CalcxForm::Accept() {
    answer_ = Trim(Text2_.Text());
    if (answer_.empty()) answer_ = "EXIT";
    Text2_.SetText("");
}

void CalcxForm::OpenDialogue() {
    Label12_.SetVisible(true);
    Command2_.SetVisible(true);
    Text2_.SetVisible(true);
    Text2_.SetText("");
}

void CalcxForm::CloseDialogue() {
    Label12_.SetCaption("");
    Text2_.SetText("");
    for (ui::Control* control : {&Label12_, &Command2_, &Text2_}) control->SetVisible(false);
}

// The dialogues are modal only by their waiting: the window goes on taking
// every event meanwhile, and the wait has no time limit.
std::string CalcxForm::WaitForAnswer() {
    Repaint();
    while (answer_.empty()) p_.ui.WaitForEvent();
    return answer_;
}

void CalcxForm::ReplaceDialogue(std::string equation) {
    OpenDialogue();
    for (;;) {
        Text1_.SetText(equation);
        answer_.clear();
        Label12_.SetCaption("Which entity in equation to replace");
        SetFocus(Text2_.Name());
        const std::string entity = WaitForAnswer();
        if (entity == "EXIT") break;

        Label12_.SetCaption("Replace " + entity + " with");
        answer_.clear();
        SetFocus(Text2_.Name());
        std::string replacement = WaitForAnswer();
        if (replacement == "EXIT") replacement = entity;  // nothing changes
        Label12_.SetCaption("");
        equation = Replace(equation, entity, replacement);
    }
    // Nothing is calculated until the user asks for it.
    shared_.CurrentEquation = equation;
    CloseDialogue();
}

void CalcxForm::VariableDialogue(std::string equation) {
    OpenDialogue();
    for (;;) {
        equation = LCase(equation);
        Text1_.SetText(equation);
        answer_.clear();
        const std::size_t at = InStr(equation, "v");
        if (at == 0) break;

        // A variable is "v" and the one character after it.
        const std::string variable = Mid(equation, static_cast<long long>(at), 2);
        Label12_.SetCaption("Replace variable " + variable + " with");
        SetFocus(Text2_.Name());
        std::string value = WaitForAnswer();
        if (value == "EXIT") value = NumText(0LL);  // no answer stands for " 0"
        Label12_.SetCaption("");
        // A value that holds the variable itself never ends this loop; the
        // user is expected to give numbers.
        while (Contains(equation, variable)) equation = Replace(equation, variable, value);
    }
    shared_.CurrentEquation = equation;
    CloseDialogue();
}

}  // namespace windows

void RegisterCalculator(Program& p) {
    p.RegisterWindow(std::string(windows::CalcxForm::kName),
                     [](Program& program) { return std::make_unique<windows::CalcxForm>(program); });
    p.utilities["calculx"] = [](Program& program) {
        program.ui.Show(program.Window(windows::CalcxForm::kName), true);
    };
}

}  // namespace ravelo
