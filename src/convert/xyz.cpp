// Plain XYZ coordinate files to an SXS file.
#include "convert/xyz.hpp"

#include <cstdint>

#include "convert/filcvrt.hpp"  // for SplitFileName, CleanNumericLine, ReadCoordinates, the records
#include "runtime/number.hpp"   // for Val, ToInt32
#include "runtime/text.hpp"     // for Trim, TextBefore, Contains
#include "core/shared.hpp"   // for DeleteIfExists

namespace ravelo::readers::XYZ {
namespace {

// A line shorter than this that holds a "." is a comment or a title, never
// an atom: a real atom line has a label and three decimal numbers.
constexpr std::size_t kShortLine = 20;

// The count line is recognised by length only: the value, as a whole number
// printed back, must be as long as the line. So any one-character line
// counts (a letter reads 0), and "3.0" does not. `count` receives the value.
bool IsCountLine(const std::string& line, std::int32_t& count);

// One line of the input, trimmed and with its numbers normalised.
std::string NextCleanLine(InputFile& in);

}  // namespace

void ConvertFile(Program& p, const std::string& fileName) {
    if (fileName.empty()) return;
    std::string title;
    FilCvrt::SplitFileName(p, fileName, title);
    // Cut at the first "." of the whole path, a dot in a folder name included.
    const std::string outPath = TextBefore(fileName, ".") + ".sxs";
    p.conversion.extension = ".xyz";
    DeleteIfExists(p, outPath);

    // Count pass: stops after the count line, so the atoms follow it; a file
    // without one is read again from its start, every non-empty line an atom.
    InputFile in = p.fs.OpenInput(fileName);
    std::int32_t count = 0;
    bool counted = false;
    std::int64_t nonEmpty = 0;
    while (!in.Eof()) {
        const std::string line = Trim(in.LineInput());
        if (line.empty()) continue;
        if (IsCountLine(line, count)) {
            counted = true;
            break;
        }
        ++nonEmpty;
    }
    if (!counted) {
        count = ToInt32(static_cast<double>(nonEmpty));
        in = p.fs.OpenInput(fileName);
    }

    OutputFile out = p.fs.OpenAppend(outPath);
    std::int64_t serial = 0;
    for (std::int64_t i = 1; i <= count && !in.Eof(); ++i) {
        std::string line = NextCleanLine(in);
        // Short lines with a decimal point (comments such as "v1.0") are
        // passed over; a line without one leaves ReadCoordinates to read on.
        while (Contains(line, ".") && line.size() <= kShortLine) line = NextCleanLine(in);
        double x = 0, y = 0, z = 0;
        FilCvrt::ReadCoordinates(FilCvrt::SourceType::Plain, in, line, x, y, z);
        std::string symbol;
        FilCvrt::GetElementSymbol(FilCvrt::SourceType::Plain, line, symbol);
        serial = i;
        FilCvrt::WriteAtomRecord(out, x, y, z, symbol, static_cast<std::int32_t>(serial));  // i <= count
    }
    // The comment line is never the title: the file's own name is.
    FilCvrt::WriteEndRecord(out, title, ToInt32(static_cast<double>(serial + 1)));
    out.Close();
    FilCvrt::ValidateOutputFile(p, outPath);
}

namespace {

bool IsCountLine(const std::string& line, std::int32_t& count) {
    // Every line tested is taken as a 32-bit count, so one beyond that range
    // overflows even when its length would not have matched.
    const std::int32_t value = ToInt32(Val(line));
    if (std::to_string(value).size() != line.size()) return false;
    count = value;
    return true;
}

std::string NextCleanLine(InputFile& in) {
    std::string line = Trim(in.LineInput());
    FilCvrt::CleanNumericLine(line);
    return line;
}

}  // namespace
}  // namespace ravelo::readers::XYZ
