// XCX crystal coordinate texts to an XCC file.
#include "convert/xcx.hpp"

#include <optional>

#include "convert/filcvrt.hpp"  // for SplitFileName, CleanNumericLine, ReadCoordinates, GetElementSymbol
#include "runtime/number.hpp"   // for Val, CheckedResult
#include "runtime/text.hpp"
#include "core/shared.hpp"  // for DeleteIfExists

namespace ravelo::readers::XCX {
namespace {

// The scale at the end of the second header line: the text after its last
// ",", less one marker character. None when the line has no comma.
std::optional<double> ScaleOf(const std::string& header);

}  // namespace

void ConvertFile(Program& p, const std::string& fileName) {
    if (fileName.empty()) return;
    std::string baseName;
    FilCvrt::SplitFileName(p, fileName, baseName);
    // Cut at the first "." of the whole path, a dot in a folder name included.
    const std::string outPath = TextBefore(fileName, ".") + ".xcc";
    p.conversion.extension = ".XCX";
    DeleteIfExists(p, outPath);
    {
        InputFile in = p.fs.OpenInput(fileName);
        OutputFile out = p.fs.OpenAppend(outPath);

        // The two header lines are copied as they stand, blank lines left
        // out. A file that runs out first simply has no scale.
        int headers = 0;
        std::optional<double> scale;
        while (headers < 2 && !in.Eof()) {
            const std::string line = Trim(in.LineInput());
            if (line.empty()) continue;
            out.PrintLine(line);
            if (++headers == 2) scale = ScaleOf(line);
        }

        // Without a scale every coordinate multiplies as 0.
        const double factor = scale.value_or(0);
        while (!in.Eof()) {
            std::string line = Trim(in.LineInput());
            if (Contains(UCase(line), "END")) break;
            FilCvrt::CleanNumericLine(line);
            // At scale 1 a line without a decimal point ends the list; at
            // any other scale such a line is still an atom.
            if (!Contains(line, ".") && scale == 1.0) break;
            double x = 0, y = 0, z = 0;
            FilCvrt::ReadCoordinates(FilCvrt::SourceType::Xcx, in, line, x, y, z);
            std::string symbol;
            FilCvrt::GetElementSymbol(FilCvrt::SourceType::Xcx, line, symbol);
            out.WriteRecord({Field::Double(CheckedResult(x * factor)),
                             Field::Double(CheckedResult(y * factor)),
                             Field::Double(CheckedResult(z * factor)), Field::Text(symbol)});
        }
        out.Close();   // a failure to put the file in place is reported here
    }
    FilCvrt::ValidateOutputFile(p, outPath);
}

namespace {

std::optional<double> ScaleOf(const std::string& header) {
    const std::size_t comma = InStrRev(header, ",");
    if (comma == 0) return std::nullopt;
    return Val(Trim(DropFirst(Trim(Mid(header, static_cast<long long>(comma) + 1)))));
}

}  // namespace
}  // namespace ravelo::readers::XCX
