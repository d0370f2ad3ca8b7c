// Alchemy structure files to an SXS file: as many atom lines as the first
// line counts.
#include "convert/alchemy.hpp"

#include <cstdint>

#include "convert/filcvrt.hpp"  // for SplitFileName, ReadCoordinates, GetElementSymbol, the records
#include "runtime/number.hpp"   // for Val, ToInt32
#include "runtime/text.hpp"     // for Trim, TextBefore, TextUpToIncluding

namespace ravelo::readers::Alchemy {

void ConvertFile(Program& p, const std::string& fileName) {
    if (fileName.empty()) return;
    std::string title;
    FilCvrt::SplitFileName(p, fileName, title);
    const std::string outPath = TextBefore(fileName, ".") + ".sxs";  // no "." raises 5
    p.conversion.extension = ".ALC";
    InputFile in = p.fs.OpenInput(fileName);
    // Appended to: converting a file again adds a second set of records.
    OutputFile out = p.fs.OpenAppend(outPath);

    // "   12 ATOMS,   11 BONDS, ..." counts 12: the words are not read. A
    // first line without a leading number counts none. (An empty file has
    // no first line and reads past its end.)
    const std::int32_t atomCount = ToInt32(Val(in.LineInput()));

    // Atom lines are taken as they stand: the number columns of this format
    // always carry their decimals, so the lines are not normalised and need
    // no point to count as atoms.
    std::int32_t lastAtom = 0;
    for (std::int64_t counter = 1; counter <= atomCount && !in.Eof(); ++counter) {
        std::string line = Trim(in.LineInput());
        // The first letters after the atom number are the atom type: C3 is
        // carbon, but CAR reads as calcium where that element is listed.
        lastAtom = FilCvrt::WriteNumberedAtom(in, line, out);
    }
    FilCvrt::WriteEndRecord(out, title, ToInt32(static_cast<double>(lastAtom) + 1));
    out.Close();
    FilCvrt::ValidateOutputFile(p, outPath);
}

}  // namespace ravelo::readers::Alchemy
