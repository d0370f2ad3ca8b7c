// Window lifecycle common to every host, and the headless host.
#include "ui/host.hpp"

#include <algorithm>
#include <cstdio>

#include "runtime/error.hpp"
#include "runtime/text.hpp"

namespace ravelo::ui {

void UiHost::Load(Form& form) {
    if (form.loaded_) return;
    form.SnapshotOrRestore();
    form.loaded_ = true;
    loaded_.push_back(&form);
    form.Form_Load();
}

void UiHost::Show(Form& form, bool modal) {
    Load(form);
    if (!form.loaded_) return;   // the window unloaded itself while loading
    form.visible_ = true;
    form.modal_ = modal;
    OnShown(form);
    form.Form_Activate();
    if (!form.loaded_) return;
    Refresh(form);
    if (modal) RunModal(form);
}

void UiHost::Hide(Form& form) {
    if (!form.visible_) return;
    form.visible_ = false;
    OnHidden(form);
}

void UiHost::Unload(Form& form) {
    if (!form.loaded_) return;
    int cancel = 0;
    form.Form_Unload(cancel);
    if (cancel) return;
    Hide(form);
    form.loaded_ = false;
    form.modal_ = false;
    Forget(form);
}

void UiHost::UnloadAll() {
    // Newest first, as windows close over one another.
    while (!loaded_.empty()) {
        Form* form = loaded_.back();
        Unload(*form);
        if (!loaded_.empty() && loaded_.back() == form) Forget(*form);   // it refused
    }
}

bool UiHost::AnyWindowVisible() const {
    return std::any_of(loaded_.begin(), loaded_.end(), [](const Form* f) { return f->Visible(); });
}

Form* UiHost::FindLoaded(std::string_view name) const {
    const std::string wanted = LCase(name);
    for (Form* form : loaded_)
        if (LCase(form->Name()) == wanted) return form;
    return nullptr;
}

void UiHost::Forget(Form& form) {
    loaded_.erase(std::remove(loaded_.begin(), loaded_.end(), &form), loaded_.end());
}

void UiHost::RunModal(Form& form) {
    while (form.Loaded() && form.Visible()) WaitForEvent();
}

void HeadlessHost::WaitForEvent() {
    const Form* waiting = nullptr;
    for (const Form* form : LoadedForms())
        if (form->Visible()) waiting = form;
    const std::string name = waiting ? waiting->Name() : std::string("program");
    std::fprintf(stderr,
                 "raveloutils: the window %s waits for a person, and there is no display to show it on.\n"
                 "Start it on a desktop (DISPLAY set and RAVELO_UI unset or qt), or drive it from a\n"
                 "script with RAVELO_UI=script (see raveloutils --help).\n",
                 name.c_str());
    std::fflush(stderr);
    // The main window's own unloading ends the program; the status stays
    // this host's.
    try {
        UnloadAll();
    } catch (const ProgramEnd&) {
    }
    EndProgram(kNeedsDisplayStatus);
}

MsgResult HeadlessHost::MsgBox(std::string_view text, MsgButtons buttons, std::string_view title) {
    std::string body;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        body += text[i] == '\r' ? '\n' : text[i];
    }
    std::fprintf(stderr, "%.*s\n%s\n", static_cast<int>(title.size()), title.data(), body.c_str());
    std::fflush(stderr);
    return DefaultAnswer(buttons);
}

void HeadlessHost::Hint(std::string_view text) {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
    std::fflush(stderr);
}

MsgResult DefaultAnswer(MsgButtons buttons) {
    return (buttons == MsgButtons::YesNo || buttons == MsgButtons::YesNoCancel) ? MsgResult::Yes
                                                                                 : MsgResult::Ok;
}

std::string OneLine(std::string_view text) {
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\r') {
            line += "\\n";
            if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
        } else if (c == '\n') {
            line += "\\n";
        } else {
            line += c;
        }
    }
    return line;
}

}  // namespace ravelo::ui
