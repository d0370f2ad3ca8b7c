// The reader of crystal coordinate files (.xcc), which the crystal readers
// write: the unit cell and fractional coordinates become Cartesian ones in
// an XXS file, with the R factor after the closing record.
#pragma once

#include <functional>
#include <string>

#include "core/program.hpp"

namespace ravelo::readers::XCC {

// Writes the XXS file beside `fileName` (the path cut before its first ".",
// then ".xxs"). `progress` (may be empty) receives the base name for the
// window's progress label. An empty name does nothing.
void ConvertFile(Program& p, const std::string& fileName,
                 const std::function<void(const std::string&)>& progress);

}  // namespace ravelo::readers::XCC
