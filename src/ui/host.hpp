// The user-interface host: shows windows, runs their lifecycle events,
// delivers user events, shows message boxes and processes pending events for
// the program's waiting loops. The lifecycle bookkeeping is common; how
// events arrive is each host's own.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ui/form.hpp"

namespace ravelo::ui {

enum class MsgButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class MsgResult { Ok, Cancel, Yes, No };

class UiHost {
public:
    virtual ~UiHost() = default;

    // Loads a window when it is not loaded (Form_Load; a window loaded again
    // after an unload starts from its designed controls).
    void Load(Form& form);
    // Loads, shows and activates a window. A modal window runs the host's
    // event loop until it is unloaded.
    void Show(Form& form, bool modal = false);
    void Hide(Form& form);
    // Runs Form_Unload; unless it cancels, the window is hidden and unloaded.
    void Unload(Form& form);
    void UnloadAll();

    // True while a loaded window is visible.
    bool AnyWindowVisible() const;
    // A loaded window by name (ASCII case-insensitive), nullptr when none.
    Form* FindLoaded(std::string_view name) const;
    const std::vector<Form*>& LoadedForms() const { return loaded_; }

    // Called when a window is destroyed, so the host forgets it.
    void Forget(Form& form);

    // Finds or creates a window by name for "show NAME" requests; set by the
    // program, which owns its windows.
    std::function<Form*(std::string_view name)> windowProvider;

    // Lets pending events be processed (the waiting loops of timed pauses).
    virtual void DoEvents() = 0;
    // Waits until at least one event has been processed (modal loops, the
    // main loop, waits without a time limit). A host that can never deliver
    // another event unloads every window and ends the program.
    virtual void WaitForEvent() = 0;
    virtual MsgResult MsgBox(std::string_view text, MsgButtons buttons, std::string_view title) = 0;
    // Brings a window's picture up to date with its model (repaint).
    virtual void Refresh(Form& form) { (void)form; }
    // A line of advice for a person reading the program's terminal output;
    // hosts that have no such reader drop it.
    virtual void Hint(std::string_view text) { (void)text; }

protected:
    virtual void OnShown(Form& form) { (void)form; }
    virtual void OnHidden(Form& form) { (void)form; }
    virtual void RunModal(Form& form);

private:
    std::vector<Form*> loaded_;
};

// Runs without a display: message boxes are written to standard error as a
// person reads them (the title, then the text with its line breaks) and
// answered with their first button. Since no person can act, a wait for one
// says which window needed a display, unloads every window and ends the
// program with kNeedsDisplayStatus.
class HeadlessHost : public UiHost {
public:
    static constexpr int kNeedsDisplayStatus = 4;

    void DoEvents() override {}
    void WaitForEvent() override;
    MsgResult MsgBox(std::string_view text, MsgButtons buttons, std::string_view title) override;
    void Hint(std::string_view text) override;
};

// The first answer of a message box as the script and headless hosts give
// it: OK, or Yes.
MsgResult DefaultAnswer(MsgButtons buttons);

// A message's text on one line, line breaks (CR LF, CR or LF) as "\n".
std::string OneLine(std::string_view text);

}  // namespace ravelo::ui
