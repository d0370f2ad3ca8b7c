// The reader of M3D database files: two header lines, one line per atom, then
// bond lines that name the bond's order in words. The atoms become an SXS
// file titled from the second header line.
#pragma once

#include <cstdint>
#include <string>

#include "core/program.hpp"

namespace ravelo::readers::M3D {

// Writes the SXS file beside `fileName` (the path cut before its first ".",
// then ".sxs"), replacing an earlier one. `lastAtom` is the window's last
// atom number: set from each atom line, it carries over into the end record
// of a later conversion that finds no atoms. An empty name does nothing.
void ConvertFile(Program& p, const std::string& fileName, std::int32_t& lastAtom);

}  // namespace ravelo::readers::M3D
