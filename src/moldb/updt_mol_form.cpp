// The UpdtMolForm1 window.
#include "moldb/updt_mol_form.hpp"

#include "moldb/updatmol.hpp"

namespace ravelo::UpdatMol {

UpdtMolForm1::UpdtMolForm1(Program& p)
    : Form(p.ui, std::string(kName), "Update DMOR Molecular Database from RAVELO32 Molecular.Log"), p_(p) {
    using ui::ControlKind;
    Add("Command1", ControlKind::Button, "BEGIN").onClick = [this] {
        (*this)["Label6"].SetBackColour(kRed);
        UpdateDatabase(p_, *this);
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

}  // namespace ravelo::UpdatMol
