// The transfer of new molecule log records into the molecule database: the
// numbered subfiles \dmor\molecule.001 onward, each a header record, 11
// template lines and fixed-size records of one quoted field a line. Records
// sent are marked in the log with "*" after their date, and the subfile's
// header keeps its record count. The work runs from the window UpdtMolForm1.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/program.hpp"
#include "ui/form.hpp"

namespace ravelo {

// Registers the command word "updtmol" and the window UpdtMolForm1.
void RegisterMolDb(Program& p);

}  // namespace ravelo

namespace ravelo::UpdatMol {

// A colour as the platform stores it, blue-green-red, in the window model's
// red-green-blue order.
constexpr ui::Colour FromStoredColour(std::uint32_t bgr) {
    return ((bgr & 0xFF) << 16) | (bgr & 0xFF00) | ((bgr >> 16) & 0xFF);
}
inline constexpr ui::Colour kRed = FromStoredColour(0x0000FF);          // work under way
inline constexpr ui::Colour kLightYellow = FromStoredColour(0xC0FFFF);  // waiting for the user

// Subfile n: \dmor\molecule.001, ... molecule.012, ... molecule.120.
std::string SubfilePath(const Program& p, long long n);
// The copy a file is rewritten through: its name with the last three
// characters replaced by "tmp".
std::string TempCopyPath(std::string_view path);

// The three parts of a description for fields of `width` characters; parts
// not filled are "V".
std::array<std::string, 3> SplitDescription(std::string_view description, std::int32_t width);

// One click of the window's button: counts the log's records first (BEGIN),
// then transfers the new ones (GO) up to the room of one subfile, updates
// the subfile's record count and marks the log.
void UpdateDatabase(Program& p, ui::Form& window);

}  // namespace ravelo::UpdatMol
