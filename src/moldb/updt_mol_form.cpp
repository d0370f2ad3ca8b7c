// The UpdtMolForm1 window.
#include "moldb/updt_mol_form.hpp"

#include <memory>

#include "runtime/error.hpp"
#include "ui/host.hpp"

namespace ravelo::UpdatMol {

using ui::ControlKind;

UpdtMolForm1::UpdtMolForm1(Program& p)
    : Form(p.ui, std::string(kName), "Update DMOR Molecular Database from RAVELO32 Molecular.Log"),
      p_(p),
      Command1_(Add("Command1", ControlKind::Button, "BEGIN")),
      Command2_(Add("Command2", ControlKind::Button, "EXIT")),
      Label1_(Add("Label1", ControlKind::Label)),
      Label2_(Add("Label2", ControlKind::Label)),
      Label3_(Add("Label3", ControlKind::Label)),
      Label4_(Add("Label4", ControlKind::Label)),
      Label5_(Add("Label5", ControlKind::Label)),
      Label6_(Add("Label6", ControlKind::Label)) {
    Command1_.onClick = [this] {
        Label6_.SetBackColour(kRed);
        UpdateDatabase(p_, static_cast<TransferView&>(*this));
    };
    Command2_.onClick = [this] { Unload(); };
}

void UpdtMolForm1::Form_Load() {
    for (ui::Control* label : Labels()) label->SetCaption("");
    Command1_.SetCaption("BEGIN");
    Command1_.SetVisible(true);
    // The title keeps the spelling the users know ("Tranfer").
    Label1_.SetCaption("Tranfer Data from \\Ravelo\\Molecule.log to database \\Dmor\\Molecule");
    Label2_.SetCaption(VersionLine());
}

std::array<ui::Control*, 6> UpdtMolForm1::Labels() {
    return {&Label1_, &Label2_, &Label3_, &Label4_, &Label5_, &Label6_};
}

void UpdtMolForm1::SetMessage(int line, std::string text) {
    if (line < 1 || line > static_cast<int>(Labels().size())) Raise(kSubscript);
    Labels()[static_cast<std::size_t>(line - 1)]->SetCaption(std::move(text));
}

void UpdtMolForm1::MarkWaiting() { Label6_.SetBackColour(kLightYellow); }
std::string UpdtMolForm1::Button() { return Command1_.Caption(); }
void UpdtMolForm1::SetButton(std::string caption) { Command1_.SetCaption(std::move(caption)); }
void UpdtMolForm1::HideButton() { Command1_.SetVisible(false); }
void UpdtMolForm1::Repaint() { p_.ui.Refresh(*this); }

}  // namespace ravelo::UpdatMol


namespace ravelo {

void RegisterMolDb(Program& p) {
    p.utilities["updtmol"] = [](Program& program) {
        program.ui.Show(program.Window(UpdatMol::UpdtMolForm1::kName), false);
    };
    p.RegisterWindow(std::string(UpdatMol::UpdtMolForm1::kName),
                     [](Program& program) { return std::make_unique<UpdatMol::UpdtMolForm1>(program); });
}

}  // namespace ravelo
