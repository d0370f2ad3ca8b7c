// The readers of crystal structures from the crystallographic database's
// three text forms: CIF files (.cif), CMF files (.cmf) and the database's
// own text listings (.csd). Each writes the crystal coordinate file (.xcc):
// the cell lengths and the structure's name, the cell angles and the R
// factor, then one record of fractional coordinates and element symbol per
// atom. The XCC reader turns that file into Cartesian coordinates.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "runtime/sequential.hpp"
#include "core/program.hpp"

namespace ravelo::readers::CSD {

// Receives the texts for the window's progress label.
using Progress = std::function<void(const std::string&)>;

// Converts one file by its extension, the text after the name's first "."
// compared in upper case: CIF, CMF or CSD; any other extension (also one
// that holds a point itself) converts nothing. Sets conversion.extension (".cif") and
// conversion.file. A name without any "." raises 5, a missing file 53.
void ConvertFile(Program& p, const std::string& fileName, const Progress& progress);

// The three readers. Each is handed the input already open at its start and
// leaves the XCC file beside the input under the structure's name; the CIF
// and listing readers also leave the input under that name. Each returns
// its atom counter (the CMF reader's counts the line that closes the list).
std::int64_t CIFFORMAT(Program& p, InputFile& in, const std::string& CSDNAM, const Progress& progress);
std::int64_t CMFFORMAT(Program& p, InputFile& in, const std::string& CSDNAM, const Progress& progress);
std::int64_t CSDFORMAT(Program& p, InputFile& in, const std::string& CSDNAM, const Progress& progress);

}  // namespace ravelo::readers::CSD
