// Start-up and command dispatch.
#include "shell/raveloutilx.hpp"

#include "convert/formats.hpp"
#include "runtime/error.hpp"
#include "runtime/number.hpp"
#include "runtime/text.hpp"
#include "shell/main_window.hpp"
#include "core/shared.hpp"
#include "ui/host.hpp"

namespace ravelo {
namespace {


// The first environment string "TEMP=..." gives TempDir as it stands.
void FindTempDir(Program& p) {
    for (std::size_t i = 1;; ++i) {
        const std::string entry = p.env.At(i);
        if (entry.empty()) break;
        if (Left(entry, 5) == "TEMP=") {
            p.TempDir = p.env.Get("TEMP");
            break;
        }
    }
    if (p.TempDir.empty()) GetTempDir(p);
}

ui::Form& MainWindow(Program& p) { return p.Window(RaveloUtils::kName); }

}  // namespace

void ReadCommandLine(Program& p, const std::string& commandLine) {
    if (!Contains(commandLine, " ")) {
        if (Contains(formats::FileTypesText(), LCase(Right(commandLine, 3)))) {
            p.CommandTail = commandLine;
            p.CommandWord = "FileConv";
        } else {
            p.CommandWord = Trim(commandLine);
            p.CommandTail.clear();
        }
    } else {
        FindLibraryCount(commandLine, p.LibraryCount);
        p.CommandTail = Trim(TextFrom(commandLine, " "));
        p.CommandWord = Trim(TextBefore(commandLine, " "));
    }
    if (Contains(p.CommandWord, "*") || Contains(p.CommandWord, "?")) {
        std::string dir;
        GetFilePath(p.CommandWord, dir);
        const auto matches = p.fs.Dir(p.CommandWord);
        p.CommandWord = dir + (matches.empty() ? std::string() : matches.front());
    }
}

void Main(Program& p, const std::string& commandLine, std::string_view window) {
    p.LibraryCount = 0;
    if (p.InstallDrive.empty()) CheckInstallation(p);
    FindTempDir(p);
    ClearFilConvLogs(p);
    p.LibraryCount = 0;

    p.CommandWord = Trim(commandLine);
    if (p.CommandWord.empty()) {
        p.ui.Show(window.empty() ? MainWindow(p) : p.Window(window), false);
        return;
    }
    ReadCommandLine(p, p.CommandWord);
    DispatchCommand(p);
    if (p.LibraryCount == 0) WaitSeconds(p, 1.0);

    // A hidden main window is unloaded, which ends the program unless a
    // window that the command showed is still open.
    ui::Form* main = p.ExistingWindow(RaveloUtils::kName);
    if (main && main->Visible()) return;
    if (main) p.ui.Unload(*main);
    if (!p.ui.AnyWindowVisible()) EndProgram(0);
}

void DispatchCommand(Program& p) {
    p.CommandWord = LCase(Trim(p.CommandWord));
    if (p.CommandWord == "ravelodelfile") {
        DeleteFileByCommand(p);
        return;
    }
    if (auto utility = p.utilities.find(p.CommandWord); utility != p.utilities.end()) {
        utility->second(p);
        return;
    }
    auto* main = static_cast<RaveloUtils*>(p.ExistingWindow(RaveloUtils::kName));
    if (main && main->Visible()) {
        main->ShowNotice(std::string(kNotOffered));
        p.ui.Refresh(*main);
        WaitSeconds(p, 5.0);
    }
}

}  // namespace ravelo
