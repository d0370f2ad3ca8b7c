// The reader of MDL molfiles and SD files: the atoms of the first atom block
// become an SXS file; bonds, properties and later structures are not read.
#pragma once

#include <string>

#include "core/program.hpp"

namespace ravelo::readers::MDL {

// Writes the SXS file beside `fileName` (the path cut before its first ".",
// then ".sxs"). An empty name does nothing.
void ConvertFile(Program& p, const std::string& fileName);

}  // namespace ravelo::readers::MDL
