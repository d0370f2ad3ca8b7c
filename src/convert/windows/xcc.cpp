// The XCC converter window.
#include "convert/xcc.hpp"

#include "convert/windows/formats.hpp"

namespace ravelo::windows {

XCC::XCC(Program& p)
    : ConverterWindow(p, "XCC",
                      {.caption = "XCCX for Kalmodyn",
                       .title = "XCC Structural Data Files => Kalmodyn's Data Files",
                       .prompt = "Enter the XCC file's Name",
                       .question = "Convert another XCC file?"}) {}

void XCC::ConvertFile(const std::string& name) {
    readers::XCC::ConvertFile(p_, name, [this](const std::string& text) { ShowProgress(text); });
}

}  // namespace ravelo::windows
