// The reader of protein structure files (.pdb, .ent): the ATOM and HETATM
// records, with their own atom numbers, and the resolution become an XXS
// file; a "CSD ENTRY" code renames the structure.
#pragma once

#include <functional>
#include <string>

#include "core/program.hpp"

namespace ravelo::readers::PDB {

// Writes the XXS file beside `fileName` and leaves the input under the name
// "<structure>.pdb" beside it. `progress` (may be empty) receives the
// structure's name for the window's progress label. An empty name does
// nothing.
void ConvertFile(Program& p, const std::string& fileName,
                 const std::function<void(const std::string&)>& progress);

}  // namespace ravelo::readers::PDB
