// The reader of Tripos MOL2 files: the atoms of the first atom section
// become an SXS file, titled with the molecule's name; bonds and every other
// section are not read.
#pragma once

#include <string>

#include "core/program.hpp"

namespace ravelo::readers::Tripos {

// Appends the atom records and an end record to the SXS file beside
// `fileName` (the path cut before its first ".", then ".sxs"): a second
// conversion of the same file adds a second set. An empty name does nothing.
void ConvertFile(Program& p, const std::string& fileName);

}  // namespace ravelo::readers::Tripos
