// The transfer of new molecule log records into the molecule database: the
// numbered subfiles \dmor\molecule.001 onward, each a header record, 11
// template lines and fixed-size records of one quoted field a line. Records
// sent are marked in the log with "*" after their date, and the subfile's
// header keeps its record count. The work runs from the window UpdtMolForm1.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/program.hpp"

namespace ravelo::UpdatMol {

// What the transfer shows in its window: four message lines, the button
// that leads it on, and a mark that it waits for the user.
class TransferView {
public:
    virtual ~TransferView() = default;
    // Message line 3 to 6 (the window's Label3 to Label6).
    virtual void SetMessage(int line, std::string text) = 0;
    // Line 6 marked as waiting for the user.
    virtual void MarkWaiting() = 0;
    virtual std::string Button() = 0;
    virtual void SetButton(std::string caption) = 0;
    virtual void HideButton() = 0;
    // Brings the window on screen up to date.
    virtual void Repaint() = 0;
};

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
void UpdateDatabase(Program& p, TransferView& view);

}  // namespace ravelo::UpdatMol
