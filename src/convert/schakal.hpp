// The reader of Schakal plotting files: every "ATOM" field gives one SXS atom
// record. The file is read field by field (comma-separated input), the atoms
// are kept in tables of fixed size held by the window, the symbol is taken
// from the label as it stands, and the output, named with an upper-case
// "SXS", has no end record.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/program.hpp"

namespace ravelo::readers::Schakal {

// The most atoms one conversion holds; the next one is a subscript error.
inline constexpr std::int32_t kMaxAtoms = 3000;

// What the window keeps for its conversions: the atom counter and the label
// and coordinate tables, indexed from 1 (index 0 is never filled).
struct Tables {
    std::int32_t atomCounter = 0;
    std::vector<std::string> labels = std::vector<std::string>(kMaxAtoms + 1);
    std::vector<double> x = std::vector<double>(kMaxAtoms + 1);
    std::vector<double> y = std::vector<double>(kMaxAtoms + 1);
    std::vector<double> z = std::vector<double>(kMaxAtoms + 1);
};

// Writes a new file beside `fileName`: the path up to and including its
// first ".", then "SXS" (without any "." the bare name "SXS" in the current
// folder). An empty name does nothing.
void ConvertFile(Program& p, const std::string& fileName, Tables& tables);

// Drops the first word of `line` (which becomes the text from its first
// blank on, trimmed) and sets `field` to the line up to and including its
// next blank, or to "" when no blank is left.
void NextSchakalField(std::string& line, std::string& field);

}  // namespace ravelo::readers::Schakal
