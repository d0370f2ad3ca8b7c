// Running the program as a process: the services of the host, the windows
// and utilities of this build, and the run itself with its exit status.
#pragma once

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "core/program.hpp"
#include "platform/download.hpp"   // complete services for a Program to be made
#include "ui/host.hpp"

namespace ravelo {

// Exit statuses of a run.
enum ExitStatus : int {
    kExitNormal = 0,
    kExitInstallation = 1,   // the installation was not found
    kExitUsage = 2,          // a bad option or window name
    kExitRuntimeError = 3,   // a run-time error ended the program
    // A window waited for a person where no display can show it.
    kExitNeedsDisplay = ui::HeadlessHost::kNeedsDisplayStatus,
};

// Makes the desktop host. Start-up knows no window system: the program's
// entry passes a factory when the build has one.
using DesktopHostFactory = std::function<std::unique_ptr<ui::UiHost>()>;

// Services for a process: drives and environment from the environment, the
// system clock and shell, and the user-interface host that RAVELO_UI names:
// "qt" (the desktop host, when `desktop` is given), "headless" or "script"
// (the script comes from RAVELO_SCRIPT or standard input). Without RAVELO_UI
// the desktop host is used when there is one and a display is available
// (DISPLAY or WAYLAND_DISPLAY set, or QT_QPA_PLATFORM given), else the
// headless host.
Services ServicesFromEnvironment(const DesktopHostFactory& desktop = nullptr);

// Registers the start-up's own windows (and later the utilities' windows
// and command words) with a program.
void RegisterStartupWindows(Program& p);

// Runs start-up with `commandLine` (or shows `window`), then keeps the
// program alive while a window is open. Returns the exit status; a run-time
// error is reported through the host ("Run-time error 'N':" and its text).
int RunProgram(Program& p, const std::string& commandLine, std::string_view window = {});

}  // namespace ravelo
