// The PDB converter window, which divides a file of several entries first.
#include "convert/pdb.hpp"
#include "convert/windows/formats.hpp"

namespace ravelo::windows {

PDB::PDB(Program& p)
    : ConverterWindow(p, "PDB",
                      {.caption = "PDBX for Kalmodyn",
                       // "Kalmodyn3's" is the window's designed title.
                       .title = "Brookhaven Protein Database Files => Kalmodyn3's Data Files",
                       .prompt = "Enter the Name of the PDB file",
                       .question = "Convert another PDB file?"}) {}

void PDB::ConvertFile(const std::string& name) {
    readers::PDB::ConvertFile(p_, name, [this](const std::string& text) { ShowProgress(text); });
}

// Every line that begins with "HEADER" starts an entry; each entry is
// converted from its own file, and the library keeps a ".lib" name.
void PDB::InitConverter() { InitLibraryConverter("HEADER", ".pdb"); }

}  // namespace ravelo::windows
