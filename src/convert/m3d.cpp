// M3D database files to an SXS file: the atom lines up to the first bond line.
#include "convert/m3d.hpp"

#include <string_view>

#include "convert/filcvrt.hpp"  // for CleanNumericLine, ReadCoordinates, GetElementSymbol, the records
#include "runtime/number.hpp"   // for Val, ToInt32
#include "runtime/text.hpp"     // for Trim, LCase, Contains, TextBefore, TextFrom, TextUpToIncluding
#include "core/shared.hpp"   // for DeleteIfExists

namespace ravelo::readers::M3D {
namespace {

// A bond line names its order in words, in any case and anywhere in the
// line; so does an atom line with such a word in it, which ends the atoms.
bool IsBondLine(const std::string& line);

}  // namespace

void ConvertFile(Program& p, const std::string& fileName, std::int32_t& lastAtom) {
    if (fileName.empty()) return;
    const std::string outPath = TextBefore(fileName, ".") + ".sxs";  // no "." raises 5
    p.conversion.extension = ".M3D";
    DeleteIfExists(p, outPath);
    InputFile in = p.fs.OpenInput(fileName);
    OutputFile out = p.fs.OpenAppend(outPath);

    // The title is the second line less its first word ("NAME benzene ring"
    // gives "benzene ring"); a line of one word gives none. A file of fewer
    // than two lines reads past its end here.
    in.LineInput();
    const std::string title = Trim(TextFrom(Trim(in.LineInput()), " "));

    while (!in.Eof()) {
        std::string line = Trim(in.LineInput());
        FilCvrt::CleanNumericLine(line);
        if (!Contains(line, ".") || IsBondLine(line)) break;
        lastAtom = ToInt32(Val(TextUpToIncluding(line, " ")));
        // Without the atom number the first letters are the element's.
        line = Trim(TextFrom(line, " "));
        double x = 0, y = 0, z = 0;
        FilCvrt::ReadCoordinates(FilCvrt::SourceType::Plain, in, line, x, y, z);
        std::string symbol;
        FilCvrt::GetElementSymbol(FilCvrt::SourceType::Plain, line, symbol);
        FilCvrt::WriteAtomRecord(out, x, y, z, symbol, lastAtom);
    }
    FilCvrt::WriteEndRecord(out, title, ToInt32(static_cast<double>(lastAtom) + 1));
    out.Close();
    FilCvrt::ValidateOutputFile(p, outPath);
}

namespace {

bool IsBondLine(const std::string& line) {
    const std::string lower = LCase(line);
    for (std::string_view order : {"single", "double", "triple"})
        if (Contains(lower, order)) return true;
    return false;
}

}  // namespace
}  // namespace ravelo::readers::M3D
