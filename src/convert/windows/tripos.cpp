// The Tripos (MOL2) converter window.
#include "convert/tripos.hpp"

#include "convert/windows/formats.hpp"

namespace ravelo::windows {

Tripos::Tripos(Program& p)
    : ConverterWindow(p, "Tripos",
                      {.caption = "TRIPX for Kalmodyn",
                       .title = "Tripos/Sybyl Structural Data Files to Kalmodyn's Data Files",
                       .prompt = "Enter the Tripos file's Name",
                       .question = "Convert another Tripos file?"}) {}

void Tripos::ConvertFile(const std::string& name) { readers::Tripos::ConvertFile(p_, name); }

}  // namespace ravelo::windows
