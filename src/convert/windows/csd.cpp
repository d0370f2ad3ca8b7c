// The CSD converter window for crystal structures, which divides a CIF
// library of several data blocks first.
#include "convert/csd.hpp"

#include "convert/windows/formats.hpp"

namespace ravelo::windows {

CSD::CSD(Program& p)
    : ConverterWindow(p, "CSD",
                      {.caption = "CSDX for Kalmodyn",
                       .title = "Cambridge Crystallographic Database Files => Kalmodyn's Data Files",
                       .prompt = "Enter the Name of the CSD file",
                       .question = "Convert another CSD file?"}) {}

void CSD::ConvertFile(const std::string& name) {
    readers::CSD::ConvertFile(p_, name, [this](const std::string& text) { ShowProgress(text); });
}

// Every data block holds one "cell_length_a" item; a file of two or more
// is divided into lib_1.cif, lib_2.cif, ..., each converted by itself, and
// the library keeps a ".lib" name.
void CSD::InitConverter() { InitLibraryConverter("cell_length_a", ""); }

}  // namespace ravelo::windows
