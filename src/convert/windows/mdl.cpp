// The MDL (MOL/SDF) converter window.
#include "convert/mdl.hpp"
#include "convert/windows/formats.hpp"

namespace ravelo::windows {

MDL::MDL(Program& p)
    : ConverterWindow(p, "MDL",
                      {.caption = "MDLX for Kalmodyn",
                       .title = "MDL (MOL/SDF) Structural Data Files => Kalmodyn's Data Files",
                       .prompt = "Enter the MDL file's Name",
                       .question = "Convert another MDL file?"}) {}

void MDL::ConvertFile(const std::string& name) { readers::MDL::ConvertFile(p_, name); }

}  // namespace ravelo::windows
