// The Schakal converter window, which holds the reader's atom tables for as
// long as it is open.
#include "convert/windows/formats.hpp"

namespace ravelo::windows {

Schakal::Schakal(Program& p)
    : ConverterWindow(p, "Schakal",
                      {.caption = "SCHAKX for Kalmodyn",
                       .title = "Schakal Files => Kalmodyn's Data Files",
                       .prompt = "Enter the name of the Schakal file",
                       .question = "Convert another Schakal file?"}) {}

void Schakal::ConvertFile(const std::string& name) { readers::Schakal::ConvertFile(p_, name, tables_); }

}  // namespace ravelo::windows
