// The reader of XCX crystal coordinate texts: two header lines already in
// the XCC form, the second ending in the coordinates' common scale, then
// one line per atom with a label and three blank-separated coordinates.
// The result is an XCC file, which the XCC reader then converts.
#pragma once

#include <string>

#include "core/program.hpp"

namespace ravelo::readers::XCX {

// Writes the XCC file beside `fileName` (the path cut before its first ".",
// then ".xcc"). An empty name does nothing.
void ConvertFile(Program& p, const std::string& fileName);

}  // namespace ravelo::readers::XCX
