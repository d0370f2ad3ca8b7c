// Protein structure files (.pdb, .ent) to an XXS file.
#include "convert/pdb.hpp"

#include <algorithm>
#include <cstdint>

#include "convert/filcvrt.hpp"  // for SplitFileName, CleanNumericLine, ReadCoordinates, the records
#include "runtime/number.hpp"   // for Val, ToInt32
#include "runtime/text.hpp"     // for Trim, LCase, Left, Mid, TextBefore, TextFrom
#include "core/shared.hpp"   // for DeleteIfExists, WaitSeconds, WriteFilConvN

namespace ravelo::readers::PDB {
namespace {

// What the first pass finds in the header.
struct Header {
    std::string name;     // the structure's name: the base name or the cleaned entry code
    std::string outBase;  // the output's path without extension
    bool hasResolution = false;
    std::string resolution;  // the text as read
};

Header ScanHeader(Program& p, const std::string& fileName, const std::string& baseName);

// The resolution text of a line that names the high resolution limit.
std::string ResolutionText(const std::string& line);

// The code of a "CSD ENTRY" line: what follows the word after "ENTRY".
std::string EntryCode(const std::string& line);

}  // namespace

void ConvertFile(Program& p, const std::string& fileName,
                 const std::function<void(const std::string&)>& progress) {
    if (fileName.empty()) return;
    std::string baseName;
    FilCvrt::SplitFileName(p, fileName, baseName);
    p.conversion.extension = ".pdb";
    const Header header = ScanHeader(p, fileName, baseName);

    if (progress) progress(header.name);
    WaitSeconds(p, 1.0);

    const std::string outPath = header.outBase + ".xxs";
    DeleteIfExists(p, outPath);
    {
        InputFile in = p.fs.OpenInput(fileName);
        OutputFile out = p.fs.OpenAppend(outPath);
        // Atom numbers are the file's own, not counted again; the end record
        // carries the last one plus 1.
        std::int32_t lastNumber = 0;
        // The texts of a line keep their storage from line to line.
        std::string read, line, rest, symbol;
        while (!in.Eof()) {
            in.LineInput(read);
            const std::string_view trimmed = TrimView(read);
            const bool hetatm = trimmed.starts_with("HETATM");
            if (!(hetatm || trimmed.starts_with("ATOM")) || !Contains(trimmed, ".")) continue;
            line.assign(trimmed);
            FilCvrt::CleanNumericLine(line);
            if (!Contains(line, ".")) break;
            // Fields are found by blanks and decimal points, not by column:
            // records whose fields run together are misread. The cleaning
            // also widens a residue number 0 to 0.0000, which then reads as a
            // coordinate. Both are kept, so that a file converts as it always has.
            const std::string_view record = TrimView(MidView(line, hetatm ? 7 : 5));
            const std::string_view number = record.substr(0, record.find(' '));
            rest.assign(TrimView(MidView(record, static_cast<long long>(number.size()) + 1)));
            lastNumber = ToInt32(Val(number));
            double x = 0, y = 0, z = 0;
            FilCvrt::ReadCoordinates(FilCvrt::SourceType::Labelled, in, rest, x, y, z);
            FilCvrt::GetElementSymbol(FilCvrt::SourceType::Labelled, rest, symbol);
            FilCvrt::WriteAtomRecord(out, x, y, z, symbol, lastNumber);
        }
        // An ".ent" file is closed as ".pdb" too: it is renamed to that below.
        FilCvrt::WriteEndRecord(out, header.name + ".pdb", ToInt32(static_cast<double>(lastNumber) + 1));
        if (header.hasResolution) out.PrintLine("Resolution_High = " + header.resolution);
        out.Close();
    }

    // The input ends up as "<structure>.pdb" beside the output, and the
    // modeller learns the new name from the N log.
    const std::string newName = header.outBase + ".pdb";
    if (LCase(fileName) != LCase(newName)) {
        WriteFilConvN(p, Field::Text(newName));
        FilCvrt::MoveFile(p, fileName, newName);
    }
    FilCvrt::ValidateOutputFile(p, outPath);
}

namespace {

Header ScanHeader(Program& p, const std::string& fileName, const std::string& baseName) {
    // Cut at the first "." of the whole path, a dot in a folder name included.
    Header header{baseName, TextBefore(fileName, "."), false, {}};
    InputFile in = p.fs.OpenInput(fileName);
    std::string line;
    while (!in.Eof()) {
        in.LineInput(line);
        if (!header.hasResolution) {
            if (ContainsNoCase(line, "d_res_high") || ContainsNoCase(line, "d_resolution_high") ||
                ContainsNoCase(line, "resolution range high")) {
                header.hasResolution = true;
                header.resolution = ResolutionText(line);
            }
        }
        // A later entry line replaces an earlier one.
        if (Contains(line, "CSD ENTRY")) {
            std::string code = EntryCode(line);
            if (!code.empty() && code != baseName) {
                FilCvrt::CleanMoleculeName(baseName, code);
                header.name = code;
                header.outBase = p.conversion.folder + code;
            }
        }
    }
    return header;
}

std::string ResolutionText(const std::string& line) {
    // Two characters before the line's first ".", wherever that dot is: in
    // a line whose data name holds the first dot ("_refine.ls_d_res_high
    // 2.0") the text starts in the name. With no dot, or one among the first
    // two characters, the whole line is taken.
    const long long start = static_cast<long long>(InStr(line, ".")) - 2;
    return Trim(Mid(line, std::max(start, 1LL)));
}

std::string EntryCode(const std::string& line) { return Trim(TextFrom(TextFrom(line, "ENTRY"), " ")); }

}  // namespace
}  // namespace ravelo::readers::PDB
