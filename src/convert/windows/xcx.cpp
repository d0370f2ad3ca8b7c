// The XCX converter window.
#include "convert/xcx.hpp"

#include "convert/windows/formats.hpp"

namespace ravelo::windows {

XCX::XCX(Program& p)
    : ConverterWindow(p, "XCX",
                      {.caption = "XCXX for Kalmodyn",
                       .title = "XCX Structural Data Files => Kalmodyn's Data Files",
                       .prompt = "Enter the XCX file's Name",
                       .question = "Convert another XCX file?"}) {}

void XCX::ConvertFile(const std::string& name) { readers::XCX::ConvertFile(p_, name); }

}  // namespace ravelo::windows
