// MDL molfiles and SD files to an SXS file: the first atom block only.
#include "convert/mdl.hpp"

#include <cstdint>

#include "convert/filcvrt.hpp"  // for CleanNumericLine, ReadCoordinates, GetElementSymbol, the records
#include "runtime/number.hpp"   // for Val, ToInt32
#include "runtime/text.hpp"     // for Trim, LCase, InStr, TextFrom, TextUpToIncluding
#include "core/shared.hpp"   // for DeleteIfExists

namespace ravelo::readers::MDL {
namespace {

// The output path: the path cut before its first "." (a dot in a folder
// name cuts there too) and ".sxs". Without any "." the base is empty and the
// file is ".sxs" in the current folder.
std::string OutputPath(const std::string& fileName);

// The title from the first line, in lower case; a generic "Molecule ..."
// name gives none.
std::string TitleFrom(const std::string& firstLine);

// The value of a line's first field (up to and including its first blank),
// as a whole number; a line without a blank reads 0.
std::int32_t FirstFieldValue(const std::string& line);

}  // namespace

void ConvertFile(Program& p, const std::string& fileName) {
    if (fileName.empty()) return;
    const std::string outPath = OutputPath(fileName);
    p.conversion.extension = ".MOL";
    DeleteIfExists(p, outPath);
    InputFile in = p.fs.OpenInput(fileName);
    OutputFile out = p.fs.OpenAppend(outPath);

    // Header scan: the first line whose first field is a positive number is
    // the counts line, the name line included ("5 ring" reads 5 atoms), and a
    // counts line whose fields run together gives one long number. There is
    // no end-of-file test: a file without a counts line reads past its end.
    std::string title;
    bool firstLine = true;
    std::int32_t atomCount = 0;
    while (atomCount <= 0) {
        const std::string line = in.LineInput();
        if (firstLine) title = TitleFrom(line);
        firstLine = false;
        atomCount = FirstFieldValue(line);
    }

    // The counter is raised before it is tested against the count, so a
    // complete block of N atoms leaves it at N + 1 and the end record carries
    // N + 2; a file that ends after k atoms carries k + 1, a line without "."
    // after k atoms k + 2. SXS files converted before carry the same numbers,
    // so the count stays as it is.
    std::int64_t counter = 0;
    while (!in.Eof()) {
        ++counter;
        if (counter > atomCount) break;
        std::string line = Trim(in.LineInput());
        FilCvrt::CleanNumericLine(line);
        // Bond and property lines are whole numbers: the atom block has ended.
        // (A lone 0 is widened to 0.0000 first, so a bond line reached past a
        // run-together count reads as an atom.)
        if (!Contains(line, ".")) break;
        double x = 0, y = 0, z = 0;
        FilCvrt::ReadCoordinates(FilCvrt::SourceType::Plain, in, line, x, y, z);
        // The symbol follows the first coordinate's text.
        std::string label = Trim(TextFrom(line, " "));
        std::string symbol;
        FilCvrt::GetElementSymbol(FilCvrt::SourceType::Plain, label, symbol);
        FilCvrt::WriteAtomRecord(out, x, y, z, symbol, static_cast<std::int32_t>(counter));  // <= count
    }
    FilCvrt::WriteEndRecord(out, title, ToInt32(static_cast<double>(counter + 1)));
    out.Close();
    FilCvrt::ValidateOutputFile(p, outPath);
}

namespace {

std::string OutputPath(const std::string& fileName) {
    const std::size_t dot = InStr(fileName, ".");
    return (dot == 0 ? std::string() : Left(fileName, static_cast<long long>(dot) - 1)) + ".sxs";
}

std::string TitleFrom(const std::string& firstLine) {
    const std::string lower = LCase(Trim(firstLine));
    return Contains(lower, "molecule") ? std::string() : lower;
}

std::int32_t FirstFieldValue(const std::string& line) {
    return ToInt32(Val(TextUpToIncluding(Trim(line), " ")));
}

}  // namespace
}  // namespace ravelo::readers::MDL
