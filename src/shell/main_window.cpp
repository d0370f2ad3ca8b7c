// The main window of the program.
#include "shell/main_window.hpp"

#include "runtime/error.hpp"
#include "shell/raveloutilx.hpp"
#include "ui/host.hpp"

namespace ravelo {

RaveloUtils::RaveloUtils(Program& p) : Form(p.ui, std::string(kName), "Ravelo Utilities"), p_(p) {
    using ui::ControlKind;
    Add("Label1", ControlKind::Label, "The Ravelo Suite of Utilities");
    struct MenuEntry {
        const char* label;
        const char* caption;
        const char* word;
    };
    static constexpr MenuEntry kMenu[] = {
        {"Label2", "Batch Structure Energy Minimizer", "ravelobatch"},
        {"Label3", "Calculx", "calculx"},
        {"Label4", "File Converter", "fileconv"},
        {"Label5", "Molecular Inventory", "inventory"},
        {"Label6", "Clone Molecule.Log into Molecule.Htm", "logtohtm"},
        {"Label7", "Read URLs", nullptr},   // hidden, and without an action
        {"Label8", "Molecular Slide Show", "slideshow"},
        {"Label9", "Update Dmor Molecular Log", "updtmol"},
    };
    for (const MenuEntry& entry : kMenu) {
        ui::Control& label = Add(entry.label, ControlKind::Label, entry.caption);
        if (entry.word) label.onClick = [this, word = std::string(entry.word)] { Open(word); };
    }
    Add("Label10", ControlKind::Label, VersionLine());
    Add("Command1", ControlKind::Button, "EXIT").onClick = [this] { Unload(); };
}

void RaveloUtils::Form_Load() { (*this)["Label7"].SetVisible(false); }

// Closing the main window ends the whole program.
void RaveloUtils::Form_Unload(int& cancel) {
    (void)cancel;
    if (!Visible()) return;   // the hidden window unloaded at the end of a command-line start
    Host().Hide(*this);
    Host().UnloadAll();
    EndProgram(0);
}

void RaveloUtils::Open(std::string_view word) {
    p_.CommandWord = std::string(word);
    p_.CommandTail.clear();
    DispatchCommand(p_);
}

}  // namespace ravelo
