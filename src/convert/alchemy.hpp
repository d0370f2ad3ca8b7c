// The reader of Alchemy structure files: a first line that begins with the
// number of atoms, then the atom lines, whose atoms become an SXS file titled
// with the file's name. The bond lines that follow are never read.
#pragma once

#include <string>

#include "core/program.hpp"

namespace ravelo::readers::Alchemy {

// Appends the atom records and an end record to the SXS file beside
// `fileName` (the path cut before its first ".", then ".sxs"). An empty name
// does nothing.
void ConvertFile(Program& p, const std::string& fileName);

}  // namespace ravelo::readers::Alchemy
