// The MOPAC converter window. The file converter sends no file here (".mop"
// files go to the Tripos window); a user opens it by name and types the
// listing's path, which is converted as typed.
#include "convert/mopac.hpp"

#include "convert/windows/formats.hpp"

namespace ravelo::windows {

MOPAC::MOPAC(Program& p)
    : ConverterWindow(p, "MOPAC",
                      {.caption = "MOPACX for Kalmodyn",
                       .title = "MOPAC Structural Data Files to Kalmodyn's Data Files",
                       .prompt = "Enter the MOPAC file's Name",
                       .question = "Convert another MOPAC file?"}) {}

void MOPAC::ConvertFile(const std::string& name) { readers::MOPAC::ConvertFile(p_, name); }

}  // namespace ravelo::windows
