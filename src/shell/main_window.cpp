// The main window of the program.
#include "shell/main_window.hpp"

#include "runtime/error.hpp"
#include "shell/raveloutilx.hpp"
#include "ui/host.hpp"

namespace ravelo {

using ui::ControlKind;

RaveloUtils::RaveloUtils(Program& p)
    : Form(p.ui, std::string(kName), "Ravelo Utilities"),
      p_(p),
      Label1_(Add("Label1", ControlKind::Label, "The Ravelo Suite of Utilities")),
      Label2_(Add("Label2", ControlKind::Label, "Batch Structure Energy Minimizer")),
      Label3_(Add("Label3", ControlKind::Label, "Calculx")),
      Label4_(Add("Label4", ControlKind::Label, "File Converter")),
      Label5_(Add("Label5", ControlKind::Label, "Molecular Inventory")),
      Label6_(Add("Label6", ControlKind::Label, "Clone Molecule.Log into Molecule.Htm")),
      Label7_(Add("Label7", ControlKind::Label, "Read URLs")),  // hidden, and without an action
      Label8_(Add("Label8", ControlKind::Label, "Molecular Slide Show")),
      Label9_(Add("Label9", ControlKind::Label, "Update Dmor Molecular Log")),
      Label10_(Add("Label10", ControlKind::Label, VersionLine())),
      Command1_(Add("Command1", ControlKind::Button, "EXIT")) {
    struct MenuEntry {
        ui::Control& label;
        const char* word;
    };
    const MenuEntry menu[] = {
        {Label2_, "ravelobatch"}, {Label3_, "calculx"},   {Label4_, "fileconv"}, {Label5_, "inventory"},
        {Label6_, "logtohtm"},    {Label8_, "slideshow"}, {Label9_, "updtmol"},
    };
    for (const MenuEntry& entry : menu)
        entry.label.onClick = [this, word = std::string(entry.word)] { Open(word); };
    Command1_.onClick = [this] { Unload(); };
}

void RaveloUtils::Form_Load() { Label7_.SetVisible(false); }

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
