// Drives the real program from a script, one command a line, for end-to-end
// tests and automation. A command runs whenever the program waits for events.
//
//   click FORM.CONTROL | click FORM        dblclick FORM.CONTROL
//   text FORM.CONTROL TEXT                 key FORM.CONTROL CODE | key FORM CODE
//   pick FORM.CONTROL INDEX                dump FORM
//   close FORM                             show FORM
//
// Message boxes print "MSGBOX <title>|<text>" and are answered with OK. A
// command for a window that is not open is ignored. When the script runs out,
// every window is unloaded and the program ends.
#pragma once

#include <cstdio>
#include <istream>
#include <memory>
#include <string>

#include "ui/host.hpp"

namespace ravelo::ui {

class ScriptHost : public UiHost {
public:
    // Commands from `script`, output to `out` (not owned).
    ScriptHost(std::unique_ptr<std::istream> script, std::FILE* out);

    void DoEvents() override;
    void WaitForEvent() override;
    MsgResult MsgBox(std::string_view text, MsgButtons buttons, std::string_view title) override;

    // Runs one command line (also for tests).
    void Execute(const std::string& line);
    // The dump of a window, as the "dump" command prints it.
    static std::string Dump(const Form& form);

private:
    bool RunNext();   // false when the script has run out

    std::unique_ptr<std::istream> script_;
    std::FILE* out_;
};

}  // namespace ravelo::ui
