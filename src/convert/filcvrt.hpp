// The converter's shared routines: preparing the input, splitting names,
// cleaning number text, reading coordinates, element symbols, molecule
// names, rounding, the SXS records and the check of a written file, and the
// division of library files into one file per entry. Every reader calls
// these; none has a copy of its own.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "runtime/sequential.hpp"
#include "core/program.hpp"

namespace ravelo::FilCvrt {

// Cleans the input in place: with a "." in the path, conversion.extension becomes the
// text from the first "." on and the base the text before it; then
// MakeCleanTempFile, whose answer it gives. A path without "." has an empty
// base and keeps conversion.extension.
bool PrepareInputFile(Program& p, const std::string& path);

// Rewrites the file at `path` with cleaned text, through the work files
// base + ".tmp" and base + ".tnp": the line-end scan, the rebuild of bad line
// ends, "=END" to "END", "<i>" and "</i>" removed, empty lines dropped. The
// cleaned text replaces the input whole. Returns whether the line ends
// passed the scan as they were.
bool MakeCleanTempFile(Program& p, const std::string& path, const std::string& base, const std::string& ext);

// conversion.folder = the path up to and including its last "\"; name = the rest
// less its last 4 characters. A path without "\" leaves both unchanged.
void SplitFileName(Program& p, const std::string& path, std::string& name);

// Normalises the numbers of one line: widens lone zeros to 0.0000, pads short
// fractions, removes bracketed uncertainties, turns "?" into blanks; a line
// holding "UNK" stays as it is.
void CleanNumericLine(std::string& line);

// What the shared line routines must know of the file a reader reads.
enum class SourceType {
    Plain,      // numbers found by their decimal points
    Labelled,   // protein and crystal files, whose labels name positions
    Xcx,        // XCX crystal lines: a label and three numbers, separated by blanks
};

// The source type of a file type's text as the readers give it (".pdb",
// ".cif", a name's last characters): Labelled when the text, in upper case,
// is a piece of ".ENT.PDB.CSD.CIF" (an empty text is), else Plain.
SourceType SourceTypeOf(std::string_view fileType);

// The first three decimal numbers from `line`, reading further lines of `in`
// when the line runs short (at the end of the file a missing number reads 0).
// For XCX lines the first blank-separated item is dropped and the next three
// are the numbers.
void ReadCoordinates(SourceType type, InputFile& in, std::string& line, double& x, double& y, double& z);

// The element symbol of an atom label (trimmed in place): one upper-case
// letter, or two letters when they name an element. In Labelled files CA,
// CB, HD, OD and the like are carbon, hydrogen and oxygen.
void GetElementSymbol(SourceType type, std::string& label, std::string& symbol);

// A title safe for a file name: blanks, "." and "," become "_"; a name that
// is a number where the fallback is not, an empty name and one longer than
// 40 characters become the fallback.
void CleanMoleculeName(const std::string& fallback, std::string& name);

// `value` rounded to `places` decimals (halves to even); left as it is when
// 0 or when the scaled value reaches 2147483647 in magnitude.
void RoundToPlaces(double& value, std::int32_t places);

// Counts the lines of a written output; fewer than 4: the file is deleted
// and the answer is false.
bool ValidateOutputFile(Program& p, const std::string& path);

// The records of an SXS (or XXS) file.
void WriteAtomRecord(OutputFile& out, double x, double y, double z, const std::string& symbol,
                     std::int32_t serial);
void WriteEndRecord(OutputFile& out, const std::string& title, std::int32_t count);

// One atom of a line that starts with the atom's own number: the coordinates
// (read on into further lines when the line runs short), the element symbol
// from the letters of the line, and the atom record under the file's number,
// which is returned.
std::int32_t WriteNumberedAtom(InputFile& in, std::string& line, OutputFile& out);

// Moves a file to a new name as a copy and a delete; the new file appears
// whole or not at all, and the old one goes only once the new one is there.
void MoveFile(Program& p, const std::string& from, const std::string& to);

// Divides a library file into one file per entry (base_1.ext, base_2.ext,
// ...) and gives the number of entries in `count` (also LibraryCount, and the
// Lib log). `marker` occurs once in every entry; `ext` is ".cif" or ".pdb".
// `progress` receives the text "Separating Library into N Files." for the
// window's progress label when there are two or more entries.
void SplitLibraryFile(Program& p, std::int32_t& count, const std::string& source, std::string marker,
                      const std::string& ext, const std::function<void(const std::string&)>& progress);

}  // namespace ravelo::FilCvrt
