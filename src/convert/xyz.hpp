// The reader of plain XYZ coordinate files: an optional atom-count line, a
// comment line, then one line per atom with a label and X, Y, Z.
#pragma once

#include <string>

#include "core/program.hpp"

namespace ravelo::readers::XYZ {

// Writes the SXS file beside `fileName` (the path cut before its first ".",
// then ".sxs"). An empty name does nothing.
void ConvertFile(Program& p, const std::string& fileName);

}  // namespace ravelo::readers::XYZ
