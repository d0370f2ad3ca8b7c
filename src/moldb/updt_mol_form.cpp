// The UpdtMolForm1 window.
#include "moldb/updt_mol_form.hpp"

#include <memory>

#include "ui/host.hpp"

namespace ravelo::UpdatMol {

UpdtMolForm1::UpdtMolForm1(Program& p)
    : Form(p.ui, std::string(kName), "Update DMOR Molecular Database from RAVELO32 Molecular.Log"), p_(p) {
    using ui::ControlKind;
    Add("Command1", ControlKind::Button, "BEGIN").onClick = [this] {
        (*this)["Label6"].SetBackColour(kRed);
        UpdateDatabase(p_, static_cast<TransferView&>(*this));
    };
    Add("Command2", ControlKind::Button, "EXIT").onClick = [this] { Unload(); };
    for (const char* label : {"Label1", "Label2", "Label3", "Label4", "Label5", "Label6"})
        Add(label, ControlKind::Label);
}

void UpdtMolForm1::Form_Load() {
    for (const char* label : {"Label1", "Label2", "Label3", "Label4", "Label5", "Label6"})
        (*this)[label].SetCaption("");
    (*this)["Command1"].SetCaption("BEGIN");
    (*this)["Command1"].SetVisible(true);
    // The title keeps the spelling the users know ("Tranfer").
    (*this)["Label1"].SetCaption("Tranfer Data from \\Ravelo\\Molecule.log to database \\Dmor\\Molecule");
    (*this)["Label2"].SetCaption(VersionLine());
}

void UpdtMolForm1::SetMessage(int line, std::string text) {
    (*this)["Label" + std::to_string(line)].SetCaption(std::move(text));
}

void UpdtMolForm1::MarkWaiting() { (*this)["Label6"].SetBackColour(kLightYellow); }
std::string UpdtMolForm1::Button() { return (*this)["Command1"].Caption(); }
void UpdtMolForm1::SetButton(std::string caption) { (*this)["Command1"].SetCaption(std::move(caption)); }
void UpdtMolForm1::HideButton() { (*this)["Command1"].SetVisible(false); }
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
