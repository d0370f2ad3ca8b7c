// The reader of MOPAC results listings: the atoms of the listing's second
// table of Cartesian coordinates (the geometry the run ended with) become an
// SXS file, titled with the listing's file name.
#pragma once

#include <string>

#include "core/program.hpp"

namespace ravelo::readers::MOPAC {

// Appends the atom records and an end record to the SXS file beside
// `fileName` (the path cut before its first ".", then ".sxs"). An empty name
// does nothing.
void ConvertFile(Program& p, const std::string& fileName);

}  // namespace ravelo::readers::MOPAC
