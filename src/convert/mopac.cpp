// MOPAC results listings to an SXS file: the second coordinate table.
#include "convert/mopac.hpp"

#include <cstdint>
#include <string_view>

#include "convert/filcvrt.hpp"  // for SplitFileName, CleanNumericLine, ReadCoordinates, the records
#include "runtime/number.hpp"   // for Val, ToInt32
#include "runtime/text.hpp"     // for Trim, Contains, TextBefore, TextUpToIncluding

namespace ravelo::readers::MOPAC {
namespace {

constexpr std::string_view kTableHeading = "CARTESIAN COORDINATES";

// The lines between a table's heading and its first atom: in the listing's
// starting geometry a blank line, the column heading and another blank line.
constexpr int kLinesAfterHeading = 3;

}  // namespace

void ConvertFile(Program& p, const std::string& fileName) {
    if (fileName.empty()) return;
    // A path without "\" leaves the title empty.
    std::string title;
    FilCvrt::SplitFileName(p, fileName, title);
    const std::string outPath = TextBefore(fileName, ".") + ".sxs";  // no "." raises 5
    p.conversion.extension = ".MOP";
    InputFile in = p.fs.OpenInput(fileName);
    // Appended to: converting a listing again adds a second set of records.
    OutputFile out = p.fs.OpenAppend(outPath);

    // The first table is the starting geometry, the second the one the run
    // ended with; later tables are not looked at. A heading that names units
    // as well counts too. There is no end-of-file test: a listing with fewer
    // than two tables reads past its end.
    for (int tables = 0; tables < 2;)
        if (Contains(in.LineInput(), kTableHeading)) ++tables;
    // Skipped whatever they hold: where the final table has only one blank
    // line before its atoms, its first two atoms go with them.
    for (int i = 0; i < kLinesAfterHeading; ++i) in.LineInput();

    std::int32_t lastAtom = 0;
    while (!in.Eof()) {
        std::string line = Trim(in.LineInput());
        FilCvrt::CleanNumericLine(line);
        // The blank line after the last atom closes the table.
        if (!Contains(line, ".") || line.empty()) break;
        // The first letters after the atom number are the ATOM column.
        lastAtom = FilCvrt::WriteNumberedAtom(in, line, out);
    }
    FilCvrt::WriteEndRecord(out, title, ToInt32(static_cast<double>(lastAtom) + 1));
    out.Close();
    FilCvrt::ValidateOutputFile(p, outPath);
}

}  // namespace ravelo::readers::MOPAC
