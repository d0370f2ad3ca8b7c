// The run of the program as a process.
#include "shell/run.hpp"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>

#include "runtime/error.hpp"
#include "runtime/text.hpp"
#include "shell/main_window.hpp"
#include "shell/raveloutilx.hpp"
#include "ui/script_host.hpp"
#include "ui/host.hpp"
#include "platform/download.hpp"

namespace ravelo {
namespace {

// A stream that does not own std::cin.
std::unique_ptr<std::istream> StandardInput() {
    auto in = std::make_unique<std::istream>(std::cin.rdbuf());
    return in;
}

bool HasValue(const char* name) {
    const char* value = std::getenv(name);
    return value && *value;
}

// A window system to draw on: an X or Wayland display, or a Qt platform
// named outright (such as "offscreen").
bool DisplayAvailable() {
    return HasValue("DISPLAY") || HasValue("WAYLAND_DISPLAY") || HasValue("QT_QPA_PLATFORM");
}

std::unique_ptr<ui::UiHost> HostFromEnvironment(const DesktopHostFactory& desktop) {
    const char* choice = std::getenv("RAVELO_UI");
    const std::string kind = choice ? LCase(Trim(choice)) : std::string();
    if (kind == "qt") {
        if (desktop) return desktop();
        std::fputs("raveloutils: this build has no desktop host; running headless\n", stderr);
        return std::make_unique<ui::HeadlessHost>();
    }
    if (kind.empty() && desktop && DisplayAvailable()) return desktop();
    if (kind == "script") {
        const char* scriptPath = std::getenv("RAVELO_SCRIPT");
        std::unique_ptr<std::istream> script;
        if (scriptPath && *scriptPath) {
            script = std::make_unique<std::ifstream>(scriptPath, std::ios::binary);
            if (!*script) std::fprintf(stderr, "raveloutils: cannot read the script %s\n", scriptPath);
        } else {
            script = StandardInput();
        }
        return std::make_unique<ui::ScriptHost>(std::move(script), stdout);
    }
    return std::make_unique<ui::HeadlessHost>();
}

}  // namespace

Services ServicesFromEnvironment(const DesktopHostFactory& desktop) {
    Services services;
    auto drives = platform::DriveMap::FromEnvironment();
    services.environment = platform::Environment::FromProcess(drives);
    services.files = std::make_unique<platform::FileSystem>(std::move(drives));
    services.clock = std::make_unique<platform::SystemClock>();
    services.ui = HostFromEnvironment(desktop);
    services.shell = std::make_unique<platform::SystemShell>();
    services.downloader = std::make_unique<platform::HostDownloader>(*services.files);
    services.waitScale = platform::WaitScaleFromEnvironment();
    return services;
}

void RegisterStartupWindows(Program& p) {
    p.RegisterWindow(std::string(RaveloUtils::kName),
                     [](Program& program) { return std::make_unique<RaveloUtils>(program); });
}

int RunProgram(Program& p, const std::string& commandLine, std::string_view window) {
    if (!window.empty() && !p.HasWindow(window)) {
        std::fprintf(stderr, "raveloutils: there is no window named %.*s\n", static_cast<int>(window.size()),
                     window.data());
        return kExitUsage;
    }
    try {
        Main(p, commandLine, window);
        while (p.ui.AnyWindowVisible()) p.ui.WaitForEvent();
        return kExitNormal;
    } catch (const ProgramEnd& end) {
        // Start-up cleared the installation drive: the drive file was
        // missing, and a newcomer learns where it belongs.
        if (end.status == kExitInstallation && p.InstallDrive.empty()) {
            const auto driveC = p.fs.Drives().Root('C');
            p.ui.Hint("raveloutils: drive C is the folder " +
                      (driveC ? platform::NativeForm(*driveC) : std::string("(not mapped)")) +
                      " (RAVELO_DRIVE_C); raveloutils --install-demo copies the demo installation there.");
        }
        return end.status;
    } catch (const RuntimeError& error) {
        // Files already written stay as they are; nothing after the error runs.
        const std::string text = "Run-time error '" + std::to_string(error.number) + "':\r\n\r\n" + error.description;
        p.ui.MsgBox(text, ui::MsgButtons::Ok, kProgramTitle);
        return kExitRuntimeError;
    }
}

}  // namespace ravelo
