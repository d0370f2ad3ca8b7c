// The force-field input conversion: input files written for the MM2, MM3,
// MM4 and MMX molecular-mechanics programs become SXS files. Such files give
// each atom as free-format numbers followed by its type; in the MM2 and MMX
// dialects the type is a number that the installation's atom-type table
// (\ravelo\mmatoms.dat) turns into an element symbol. There is no window:
// the file converter runs this and it reports back on the converter's window.
#pragma once

#include <functional>
#include <string>

#include "core/program.hpp"

namespace ravelo::MM2MMX {

// Converts the file the converter is working on (conversion.file, quotes
// dropped, trimmed) in the dialect of its name's last two characters, then
// calls `done` (the converter window shows "Done" and its files again); an
// empty name converts nothing and calls nothing.
void Main(Program& p, const std::function<void()>& done);

// Converts `fileName` in `dialect` ("m2", "m3", "m4", "mx", "np" or any
// other) to the SXS file beside it (the path cut before its first ".", then
// ".sxs"). The atom-type table is read first, even for an empty name, which
// then does nothing else.
void ConvertFile(Program& p, const std::string& fileName, const std::string& dialect);

}  // namespace ravelo::MM2MMX
