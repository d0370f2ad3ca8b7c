// The Alchemy converter window.
#include "convert/alchemy.hpp"

#include "convert/windows/formats.hpp"

namespace ravelo::windows {

Alchemy::Alchemy(Program& p)
    : ConverterWindow(p, "Alchemy",
                      {.caption = "ALCHX for Kalmodyn",
                       .title = "Alchemy Structural Data Files to Kalmodyn's Data Files",
                       .prompt = "Enter the Alchemy file's Name",
                       .question = "Convert another Alchemy file?"}) {}

void Alchemy::ConvertFile(const std::string& name) { readers::Alchemy::ConvertFile(p_, name); }

}  // namespace ravelo::windows
