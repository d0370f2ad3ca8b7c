// Tripos MOL2 files to an SXS file: the first atom section only.
#include "convert/tripos.hpp"

#include <cstdint>

#include "convert/filcvrt.hpp"  // for CleanNumericLine, ReadCoordinates, GetElementSymbol, the records
#include "runtime/number.hpp"   // for Val, ToInt32
#include "runtime/text.hpp"     // for Trim, Contains, TextBefore, TextUpToIncluding

namespace ravelo::readers::Tripos {
namespace {

// Reads up to the atom section's header and gives the molecule's name, the
// line after the last molecule header met on the way.
std::string FindAtomSection(InputFile& in);

}  // namespace

void ConvertFile(Program& p, const std::string& fileName) {
    if (fileName.empty()) return;
    const std::string outPath = TextBefore(fileName, ".") + ".sxs";  // no "." raises 5
    p.conversion.extension = ".MOL2";
    InputFile in = p.fs.OpenInput(fileName);
    // The output is appended to, not replaced: converting a file again adds
    // its atoms and end record once more behind the first conversion.
    OutputFile out = p.fs.OpenAppend(outPath);

    const std::string title = FindAtomSection(in);
    std::int32_t lastAtom = 0;
    while (!in.Eof()) {
        std::string line = Trim(in.LineInput());
        FilCvrt::CleanNumericLine(line);
        // A line without a point is no atom; the next "@<TRIPOS>" header
        // (as a rule the bonds) closes the section.
        if (!Contains(line, ".") || Contains(line, "@<TRIPOS>")) break;
        // The atom number holds digits only, so the first letters of the
        // line are the atom's name; the Sybyl type further on plays no part.
        // The file's own numbering is kept, gaps and all.
        lastAtom = FilCvrt::WriteNumberedAtom(in, line, out);
    }
    FilCvrt::WriteEndRecord(out, title, ToInt32(static_cast<double>(lastAtom) + 1));
    out.Close();
    FilCvrt::ValidateOutputFile(p, outPath);
}

namespace {

std::string FindAtomSection(InputFile& in) {
    // There is no end-of-file test: a file without an atom section reads
    // past its end. The name line itself is tested for the atom header but
    // never for a molecule header, and it is kept as it stands apart from
    // its outer blanks.
    std::string title;
    std::string line;
    do {
        line = in.LineInput();
        if (Contains(line, "@<TRIPOS>MOLECULE")) {
            line = in.LineInput();
            title = Trim(line);
        }
    } while (!Contains(line, "@<TRIPOS>ATOM"));
    return title;
}

}  // namespace
}  // namespace ravelo::readers::Tripos
