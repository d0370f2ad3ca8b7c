// The XYZ converter window.
#include "convert/windows/formats.hpp"
#include "convert/xyz.hpp"

namespace ravelo::windows {

XYZ::XYZ(Program& p)
    : ConverterWindow(p, "XYZ",
                      {.caption = "XYZX for Kalmodyn",
                       .title = "XYZ Structural Data Files => Kalmodyn's Data Files",
                       .prompt = "Enter the XYZ file's Name",
                       .question = "Convert another XYZ file?"}) {}

void XYZ::ConvertFile(const std::string& name) { readers::XYZ::ConvertFile(p_, name); }

}  // namespace ravelo::windows
