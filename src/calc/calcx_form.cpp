// The calculator window.
#include "calc/calcx_form.hpp"

#include <cstdint>

#include "runtime/number.hpp"
#include "runtime/text.hpp"
#include "ui/host.hpp"

namespace ravelo {
namespace windows {
namespace {

constexpr int kLightRed = 12;
constexpr int kLightMagenta = 13;
constexpr int kYellow = 14;

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

CalcxForm::CalcxForm(Program& p) : Form(p.ui, std::string(kName), "The Calculator"), p_(p) {
    using ui::ControlKind;
    Add("Label1", ControlKind::Label, "The Scientific Calculator and Math Expression Evaluator").onClick =
        [this] { Label(13).SetCaption(VersionLine()); };
    Add("Label2", ControlKind::Label, "pi  ( )  ^  *  /  +  -  sin  tan  cos  atn  log");
    Add("Label3", ControlKind::Label, "Store Value").onClick = [this] { StoreValue(); };
    Add("Label4", ControlKind::Label, "Store Equation").onClick = [this] { StoreEquation(); };
    Add("Label5", ControlKind::Label, "Help").onClick = [this] { ShowHelp(); };
    Add("Label6", ControlKind::Label, "Recall Value").onClick = [this] { RecallValue(); };
    Add("Label7", ControlKind::Label, "Recall Equation").onClick = [this] { RecallEquation(); };
    Add("Label8", ControlKind::Label, "Clear").onClick = [this] { ClearDisplayAndEquation(); };
    Add("Label9", ControlKind::Label, "EXIT").onClick = [this] { Exit(); };
    Add("Label10", ControlKind::Label, "Trace").onClick = [this] { ToggleTrace(); };
    Add("Label11", ControlKind::Label, "Math Equation");
    Add("Label12", ControlKind::Label);
    for (int number = 13; number <= 17; ++number) Add("Label" + std::to_string(number), ControlKind::Label);

    ui::Control& text1 = Add("Text1", ControlKind::TextBox);
    // An edited equation is no longer the one calculated: it cannot be stored.
    text1.onChange = [this] { Label(4).SetVisible(false); };
    text1.onKeyPress = [this](int& keyAscii) {
        if (keyAscii == 13) Calculate();
    };
    Add("Text2", ControlKind::TextBox);
    Add("Command1", ControlKind::Button, "Calculate").onClick = [this] { Calculate(); };
    Add("Command2", ControlKind::Button, "Accept").onClick = [this] { Accept(); };
    ui::Control& list = Add("List1", ControlKind::ListBox);
    list.onClick = [this] {
        const int index = (*this)["List1"].state.listIndex;
        if (index >= 0 && index < static_cast<int>(history_.size()))
            picked_ = history_[static_cast<std::size_t>(index)];  // as the history holds it now
    };
}

void CalcxForm::Form_Load() {
    Label(1).SetCaption("The Scientific Calculator and Math Expression Evaluator");
    Label(1).SetBackColour(ui::PaletteColour(kLightMagenta));
    Label(2).SetCaption("pi  ( )  ^  *  /  +  -  sin  tan  cos  atn  log");
    Label(2).SetBackColour(ui::PaletteColour(kLightRed));
    for (int number : {3, 4, 5, 6, 7, 8, 10}) Label(number).SetBackColour(ui::PaletteColour(kYellow));
    Label(9).SetBackColour(ui::PaletteColour(kLightRed));
    for (std::string_view name : {"List1", "Label4", "Text2", "Label12", "Command2"})
        (*this)[name].SetVisible(false);
    (*this)["Text1"].SetText("");
    ClearLines(13, 17);
}

// A click on the window's background clears the display.
void CalcxForm::Form_Click() { ClearLines(13, 17); }

std::string CalcxForm::Line(int index) const {
    for (const auto& control : Controls())
        if (control->Name() == "Label" + std::to_string(13 + index)) return control->Caption();
    return {};
}

void CalcxForm::SetLine(int index, std::string text) { Label(13 + index).SetCaption(std::move(text)); }

void CalcxForm::Repaint() { p_.ui.Refresh(*this); }

ui::Control& CalcxForm::Label(int number) { return (*this)["Label" + std::to_string(number)]; }

void CalcxForm::ClearLines(int first, int last) {
    for (int number = first; number <= last; ++number) Label(number).SetCaption("");
}

void CalcxForm::Flash(std::string_view label, int during, int after) {
    ui::Control& control = (*this)[label];
    control.SetBackColour(ui::PaletteColour(during));
    Repaint();
    BusyWait(p_, 0.25);
    control.SetBackColour(ui::PaletteColour(after));
    Repaint();
}

void CalcxForm::Calculate() {
    const std::string typed = Trim((*this)["Text1"].Text());
    if (typed.size() < 3) return;
    // Only an equation with a digit 1 to 9 before its last two characters
    // is calculated, so "pi*2" or "atn(1)" are not: bracket them, or put a
    // number in front.
    bool hasDigit = false;
    for (std::size_t i = 0; i + 2 < typed.size(); ++i)
        hasDigit = hasDigit || (typed[i] >= '1' && typed[i] <= '9');
    if (!hasDigit) return;

    shared_.CurrentEquation = LCase(typed);
    (*this)["Text1"].SetText(shared_.CurrentEquation);
    history_[0] = shared_.CurrentEquation;
    Label(4).SetVisible(true);
    if (Contains(shared_.CurrentEquation, "v")) VariableDialogue(shared_.CurrentEquation);

    std::string answer;
    CALCULX::EvaluateExpression(p_, shared_, *this, 0, answer, history_);
    SetFocus("Text1");
}

void CalcxForm::StoreValue() {
    Flash("Label3", kLightRed, kYellow);
    storedValue_ = shared_.LastAnswer;
}

void CalcxForm::StoreEquation() {
    Flash("Label4", kLightRed, kYellow);
    // Ten slots; the eleventh store overwrites the oldest, slot 1.
    if (++storeCounter_ == 11) storeCounter_ = 1;
    history_[static_cast<std::size_t>(storeCounter_)] = history_[0];
    ui::Control& list = (*this)["List1"];
    list.Clear();
    for (const std::string& equation : history_) list.AddItem(equation);
}

void CalcxForm::ShowHelp() {
    // The one label that flashes the other way round, and stays light red.
    Flash("Label5", kYellow, kLightRed);
    ClearLines(13, 16);
    for (int line = 0; line < 4; ++line) Label(13 + line).SetCaption(kHelpLines[line]);
}

void CalcxForm::RecallValue() {
    Flash("Label6", kLightRed, kYellow);
    ClearLines(13, 17);
    Label(13).SetCaption(NumText(storedValue_));
}

void CalcxForm::RecallEquation() {
    Flash("Label7", kLightRed, kYellow);
    if (history_[0].empty()) return;
    ClearLines(13, 17);
    ui::Control& list = (*this)["List1"];
    list.SetVisible(true);
    SetFocus("List1");
    picked_.clear();
    Repaint();
    // A minute to pick a line, by the clock and not scaled: it waits for the
    // user, not for effect.
    const std::uint32_t start = p_.clock.Millis();
    while (picked_.empty() && p_.clock.Millis() - start <= 60000) p_.DoEvents();
    list.SetVisible(false);
    if (picked_.empty()) return;
    if (Contains(picked_, "v")) {
        VariableDialogue(picked_);
    } else {
        ReplaceDialogue(picked_);
    }
}

void CalcxForm::ClearDisplayAndEquation() {
    Flash("Label8", kLightRed, kYellow);
    ClearLines(13, 17);
    (*this)["Text1"].SetText("");
    SetFocus("Text1");
}

void CalcxForm::ToggleTrace() {
    Flash("Label10", kLightRed, kYellow);
    if (shared_.TraceFlag != "T") {
        shared_.TraceFlag = "T";
        Label(10).SetBackColour(ui::PaletteColour(kLightRed));  // red while tracing
    } else {
        shared_.TraceFlag = "F";
        Label(10).SetBackColour(ui::PaletteColour(kYellow));
    }
}

void CalcxForm::Exit() {
    Flash("Label9", kLightRed, kYellow);
    Unload();
}

void CalcxForm::Accept() {
    ui::Control& text2 = (*this)["Text2"];
    answer_ = Trim(text2.Text());
    if (answer_.empty()) answer_ = "EXIT";
    text2.SetText("");
}

void CalcxForm::OpenDialogue() {
    Label(12).SetVisible(true);
    (*this)["Command2"].SetVisible(true);
    ui::Control& text2 = (*this)["Text2"];
    text2.SetVisible(true);
    text2.SetText("");
}

void CalcxForm::CloseDialogue() {
    Label(12).SetCaption("");
    (*this)["Text2"].SetText("");
    for (std::string_view name : {"Label12", "Command2", "Text2"}) (*this)[name].SetVisible(false);
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
        (*this)["Text1"].SetText(equation);
        answer_.clear();
        Label(12).SetCaption("Which entity in equation to replace");
        SetFocus("Text2");
        const std::string entity = WaitForAnswer();
        if (entity == "EXIT") break;

        Label(12).SetCaption("Replace " + entity + " with");
        answer_.clear();
        SetFocus("Text2");
        std::string replacement = WaitForAnswer();
        if (replacement == "EXIT") replacement = entity;  // nothing changes
        Label(12).SetCaption("");
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
        (*this)["Text1"].SetText(equation);
        answer_.clear();
        const std::size_t at = InStr(equation, "v");
        if (at == 0) break;

        // A variable is "v" and the one character after it.
        const std::string variable = Mid(equation, static_cast<long long>(at), 2);
        Label(12).SetCaption("Replace variable " + variable + " with");
        SetFocus("Text2");
        std::string value = WaitForAnswer();
        if (value == "EXIT") value = NumText(0LL);  // no answer stands for " 0"
        Label(12).SetCaption("");
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
