// The script host: one command a line, run whenever the program waits.
#include "ui/script_host.hpp"

#include <charconv>
#include <cstdio>

#include "runtime/error.hpp"
#include "runtime/text.hpp"

namespace ravelo::ui {
namespace {

// "FORM.CONTROL" split at its first ".".
struct Target {
    std::string form;
    std::string control;
};

Target ParseTarget(std::string_view text) {
    const std::size_t dot = text.find('.');
    if (dot == std::string_view::npos) return {std::string(text), {}};
    return {std::string(text.substr(0, dot)), std::string(text.substr(dot + 1))};
}

// Splits off the first blank-separated word of `rest`.
std::string NextWord(std::string_view& rest) {
    while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
    const std::size_t end = std::min(rest.find(' '), rest.size());
    std::string word(rest.substr(0, end));
    rest.remove_prefix(end);
    if (!rest.empty()) rest.remove_prefix(1);   // the one blank after the word
    return word;
}

std::optional<int> ParseInt(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::string ColourText(const std::optional<Colour>& colour) {
    if (!colour) return "-";
    char buf[8];
    std::snprintf(buf, sizeof buf, "%06X", static_cast<unsigned>(*colour & 0xFFFFFF));
    return buf;
}

}  // namespace

ScriptHost::ScriptHost(std::unique_ptr<std::istream> script, std::FILE* out)
    : script_(std::move(script)), out_(out) {}

void ScriptHost::DoEvents() { RunNext(); }

void ScriptHost::WaitForEvent() {
    if (RunNext()) return;
    UnloadAll();
    EndProgram(0);
}

MsgResult ScriptHost::MsgBox(std::string_view text, MsgButtons buttons, std::string_view title) {
    std::fprintf(out_, "MSGBOX %.*s|%s\n", static_cast<int>(title.size()), title.data(),
                 OneLine(text).c_str());
    std::fflush(out_);
    return DefaultAnswer(buttons);
}

bool ScriptHost::RunNext() {
    std::string line;
    if (!script_ || !std::getline(*script_, line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    Execute(line);
    return true;
}

std::string ScriptHost::Dump(const Form& form) {
    std::string dump;
    for (const auto& control : form.Controls()) {
        dump += form.Name() + "." + control->Name() + "\t" + (control->Visible() ? "1" : "0") + "\t" +
                ColourText(control->state.backColour) + "\t" + control->DumpText() + "\n";
    }
    dump += "END\n";
    return dump;
}

void ScriptHost::Execute(const std::string& line) {
    std::string_view rest = line;
    const std::string verb = LCase(NextWord(rest));
    if (verb.empty() || verb[0] == '#') return;
    const Target target = ParseTarget(NextWord(rest));

    if (verb == "show") {
        if (windowProvider) {
            if (Form* form = windowProvider(target.form)) Show(*form, false);
        }
        return;
    }
    Form* form = FindLoaded(target.form);
    if (!form) return;   // a window that is not open takes no commands
    Control* control = target.control.empty() ? nullptr : form->Find(target.control);
    if (!target.control.empty() && !control) {
        std::fprintf(stderr, "script: no control %s on %s\n", target.control.c_str(), form->Name().c_str());
        return;
    }

    if (verb == "dump") {
        const std::string dump = Dump(*form);
        std::fputs(dump.c_str(), out_);
        std::fflush(out_);
    } else if (verb == "close") {
        Unload(*form);
    } else if (verb == "click") {
        if (!control) {
            form->Form_Click();
        } else if (control->onClick) {
            control->onClick();
        }
    } else if (verb == "dblclick") {
        if (control && control->onDblClick) control->onDblClick();
    } else if (verb == "text") {
        if (control) control->Type(std::string(rest));
    } else if (verb == "key") {
        std::optional<int> code = ParseInt(Trim(rest));
        if (!code) return;
        int key = *code;
        if (!control) {
            form->Form_KeyPress(key);
        } else if (control->onKeyPress) {
            control->onKeyPress(key);
        }
    } else if (verb == "pick") {
        std::optional<int> index = ParseInt(Trim(rest));
        if (control && index) control->Pick(*index);
    } else {
        std::fprintf(stderr, "script: unknown command %s\n", verb.c_str());
        return;
    }
    if (form->Loaded()) Refresh(*form);
}

}  // namespace ravelo::ui
