// Crystal structures (.cif, .cmf and .csd listings) to an XCC file.
#include "convert/csd.hpp"

#include <array>

#include "convert/filcvrt.hpp"  // for SplitFileName, CleanNumericLine, ReadCoordinates, GetElementSymbol
#include "runtime/error.hpp"    // for Raise
#include "runtime/number.hpp"   // for Val
#include "runtime/text.hpp"
#include "core/shared.hpp"  // for DeleteIfExists, WaitSeconds, WriteFilConvN

namespace ravelo::readers::CSD {
namespace {

// Shortest atom lines after cleaning: a label and three coordinates with
// their decimals cannot be shorter. A shorter one is a broken record.
constexpr std::size_t kShortCifAtom = 20;
constexpr std::size_t kShortListingAtom = 25;

// The unit cell in the order the file gives it. Each kind holds three
// values; a fourth is out of range (error 9).
struct Cell {
    std::array<double, 3> lengths{};
    std::array<double, 3> angles{};
    std::size_t lengthCount = 0;
    std::size_t angleCount = 0;

    void AddLength(double value);
    void AddAngle(double value);
    bool Complete() const { return lengthCount == 3 && angleCount == 3; }
};

// The candidate names of a CIF structure; empty when the file has none.
struct CifNames {
    std::string deposition;  // the deposition number (_database_code_depnum_ccdc_archive)
    std::string csdCode;     // _database_code_CSD
    std::string blockCode;   // data_CSD_CIF_<code>
    std::string plainCode;   // any other "_database_code " item
    std::string dataBlock;   // a short data block name in upper case
    std::string systematic;  // _chemical_name_systematic
    std::string common;      // _chemical_name_common
};

// The first R factor line of a CIF file: "_r_factor_obs" or "_r_factor_gt".
std::string FindCifRFactor(InputFile& in);
CifNames ScanCifNames(InputFile& in);
// The value of a chemical name item, on its own line or on the second line
// after it; empty when the value is too short to be a name.
std::string ChemicalNameValue(InputFile& in, const std::string& line);
std::string ChooseCifName(const CifNames& names, const std::string& baseName);
Cell ReadCifCell(InputFile& in);

// The name in the progress label, then a second's pause for the user.
void Announce(Program& p, const Progress& progress, const std::string& text);
// Records 1 and 2 of the XCC file.
void WriteCell(OutputFile& out, const Cell& cell, const std::string& title, const std::string& rFactor);
// One atom record from a cleaned coordinate line; labels are read by the
// rules of the file type the reader was given (conversion.extension).
void WriteAtom(FilCvrt::SourceType type, InputFile& in, OutputFile& out, std::string& line);
// Leaves the input under `newName` unless that is its name already, and
// tells the modeller through the N log.
void RenameInput(Program& p, const std::string& input, const std::string& newName);

}  // namespace

void ConvertFile(Program& p, const std::string& fileName, const Progress& progress) {
    // Taken apart at the first ".", so a base name that holds a point leaves
    // an extension with a point in it, which no reader takes. A name without
    // any point has no base name at all: error 5 inside TextBefore.
    const std::string base = TextBefore(fileName, ".");
    const std::string extension = Mid(fileName, static_cast<long long>(base.size()) + 2);
    // Appended, not concatenated: g++ 12 misreports "." + extension here
    // (-Wrestrict).
    p.conversion.extension = ".";
    p.conversion.extension += extension;
    p.conversion.file = fileName;
    InputFile in = p.fs.OpenInput(fileName);
    const std::string kind = UCase(extension);
    if (kind == "CMF") {
        CMFFORMAT(p, in, fileName, progress);
    } else if (kind == "CSD") {
        CSDFORMAT(p, in, fileName, progress);
    } else if (kind == "CIF") {
        CIFFORMAT(p, in, fileName, progress);
    }
}

std::int64_t CIFFORMAT(Program& p, InputFile& in, const std::string& CSDNAM, const Progress& progress) {
    const FilCvrt::SourceType type = FilCvrt::SourceTypeOf(p.conversion.extension);
    std::string baseName;
    FilCvrt::SplitFileName(p, CSDNAM, baseName);
    std::string rFactor = FindCifRFactor(in);
    in = p.fs.OpenInput(CSDNAM);
    const std::string name = ChooseCifName(ScanCifNames(in), baseName);
    const std::string outBase = p.conversion.folder + name;
    Announce(p, progress, name);

    const std::string xccPath = outBase + ".xcc";
    DeleteIfExists(p, xccPath);
    in = p.fs.OpenInput(CSDNAM);
    std::int64_t atoms = 0;
    {
        OutputFile out = p.fs.OpenAppend(xccPath);
        const Cell cell = ReadCifCell(in);
        // On to the header of the fractional coordinate columns.
        while (!in.Eof()) {
            if (Contains(UCase(in.LineInput()), "_ATOM_SITE_FRACT")) break;
        }
        if (rFactor.empty()) rFactor = "+";
        WriteCell(out, cell, name + ".cif", rFactor);

        // The coordinates are taken in the order they stand on the line; the
        // column order of the loop header is not looked up.
        while (!in.Eof()) {
            std::string line = Trim(in.LineInput());
            if (line.size() < 3) continue;
            const std::string upper = UCase(line);
            if (Contains(upper, "_ATOM_SITE_")) continue;
            if (upper == "#END" || upper == "LOOP_") break;
            FilCvrt::CleanNumericLine(line);
            if (!Contains(line, ".")) continue;
            if (line.size() < kShortCifAtom) Raise(kBadRecordLength);
            ++atoms;
            WriteAtom(type, in, out, line);
        }
        out.Close();   // a failure to put the file in place is reported here
    }
    RenameInput(p, CSDNAM, outBase + ".cif");
    FilCvrt::ValidateOutputFile(p, xccPath);
    return atoms;
}

std::int64_t CMFFORMAT(Program& p, InputFile& in, const std::string& CSDNAM, const Progress& progress) {
    const FilCvrt::SourceType type = FilCvrt::SourceTypeOf(p.conversion.extension);
    std::string baseName;
    FilCvrt::SplitFileName(p, CSDNAM, baseName);
    std::string rFactor;
    while (!in.Eof()) {
        const std::string line = in.LineInput();
        if (Contains(LCase(line), "_r_factor")) {
            rFactor = Trim(TextFrom(line, " "));
            break;
        }
    }

    // The code stands in quotes after a word: 'CSD ABCDEF' gives ABCDEF'
    // (the closing quote stays, as the modeller's files have always had it).
    in = p.fs.OpenInput(CSDNAM);
    std::string name;
    while (!in.Eof()) {
        const std::string line = in.LineInput();
        if (Contains(UCase(line), "DATABASE_CODE_CSD")) {
            name = Trim(TextFrom(DropFirst(Trim(TextFrom(line, "'"))), " "));
            break;
        }
    }
    FilCvrt::CleanMoleculeName(baseName, name);
    const std::string outBase = p.conversion.folder + name;
    Announce(p, progress, outBase);

    const std::string xccPath = outBase + ".xcc";
    DeleteIfExists(p, xccPath);
    std::int64_t atoms = 0;
    {
        OutputFile out = p.fs.OpenAppend(xccPath);
        in = p.fs.OpenInput(CSDNAM);
        // The three lengths first, then the three angles; a "?" angle stays
        // 0 here. Without an end-of-file test: a short cell runs into error 62.
        Cell cell;
        while (cell.lengthCount < 3) {
            const std::string line = in.LineInput();
            if (Contains(UCase(line), "CELL_LENGTH")) cell.AddLength(Val(Trim(TextAfter(line, " "))));
        }
        while (cell.angleCount < 3) {
            const std::string line = in.LineInput();
            if (Contains(UCase(line), "CELL_ANGLE")) cell.AddAngle(Val(Trim(TextAfter(line, " "))));
        }

        // A file whose CIF/MIF block comes before the atom list is
        // deliberately left with an empty XCC file, which is not checked
        // either.
        for (;;) {
            const std::string upper = UCase(in.LineInput());
            if (Contains(upper, "DATA_CSD_CIF/MIF")) {
                out.Close();
                return atoms;
            }
            if (Contains(upper, "CCDC_ATOM_SITE_BASE")) break;
        }
        WriteCell(out, cell, name + ".cmf", rFactor.empty() ? "+" : rFactor);

        // Atom lines begin with a running number and the atom's name, which
        // are dropped; the counter counts the line that ends the list too.
        while (!in.Eof()) {
            const std::string line = in.LineInput();
            ++atoms;
            if (Val(line) == 0) break;
            std::string rest = Trim(TextAfter(Trim(TextAfter(Trim(line), " ")), " "));
            FilCvrt::CleanNumericLine(rest);
            if (!Contains(rest, ".")) break;
            if (rest.size() < kShortListingAtom) Raise(kBadRecordLength);
            WriteAtom(type, in, out, rest);
        }
        out.Close();
    }
    FilCvrt::ValidateOutputFile(p, xccPath);
    return atoms;
}

std::int64_t CSDFORMAT(Program& p, InputFile& in, const std::string& CSDNAM, const Progress& progress) {
    const FilCvrt::SourceType type = FilCvrt::SourceTypeOf(p.conversion.extension);
    std::string baseName;
    FilCvrt::SplitFileName(p, CSDNAM, baseName);
    std::string name, rFactor;
    bool haveCode = false, haveRFactor = false;
    while (!in.Eof() && !(haveCode && haveRFactor)) {
        const std::string line = in.LineInput();
        if (Contains(UCase(line), "REFERENCE CODE")) {
            // Reference codes have at most 8 characters.
            name = Trim(Left(Trim(TextAfter(line, ":")), 8));
            haveCode = true;
        }
        if (Contains(LCase(line), "r-factor")) {
            rFactor = Trim(TextFrom(line, " "));
            haveRFactor = true;
        }
    }
    FilCvrt::CleanMoleculeName(baseName, name);
    const std::string outBase = p.conversion.folder + name;
    Announce(p, progress, outBase);

    const std::string xccPath = outBase + ".xcc";
    DeleteIfExists(p, xccPath);
    std::int64_t atoms = 0;
    {
        OutputFile out = p.fs.OpenAppend(xccPath);
        in = p.fs.OpenInput(CSDNAM);
        // The listing's own headings are matched as they are printed, in
        // upper case.
        std::string line;
        do {
            line = in.LineInput();
        } while (!Contains(line, "CELL DIMENSIONS"));
        // a, b, c, alpha, beta, gamma after the colon, each up to the next
        // blank (a line short of them has none left to cut at: error 5).
        std::string numbers = Trim(TextAfter(line, ":"));
        Cell cell;
        for (int i = 0; i < 5; ++i) {
            const double value = Val(TextBefore(numbers, " "));
            if (i < 3) {
                cell.AddLength(value);
            } else {
                cell.AddAngle(value);
            }
            numbers = Trim(TextAfter(numbers, " "));
        }
        cell.AddAngle(Val(numbers));
        WriteCell(out, cell, name + ".csd", rFactor.empty() ? "+" : rFactor);

        // "ATOMIC COORD. " fills the first 14 characters of an atom line.
        while (!in.Eof()) {
            line = in.LineInput();
            if (!Contains(line, "ATOMIC COORD.")) continue;
            std::string atom = Trim(Mid(line, 15));
            FilCvrt::CleanNumericLine(atom);
            if (!Contains(atom, ".")) break;
            if (atom.size() < kShortListingAtom) Raise(kBadRecordLength);
            ++atoms;
            WriteAtom(type, in, out, atom);
        }
        out.Close();
    }
    RenameInput(p, CSDNAM, outBase + ".csd");
    FilCvrt::ValidateOutputFile(p, xccPath);
    return atoms;
}

namespace {

void Cell::AddLength(double value) {
    if (lengthCount == lengths.size()) Raise(kSubscript);
    lengths[lengthCount++] = value;
}

void Cell::AddAngle(double value) {
    if (angleCount == angles.size()) Raise(kSubscript);
    angles[angleCount++] = value;
}

std::string FindCifRFactor(InputFile& in) {
    while (!in.Eof()) {
        const std::string line = Trim(in.LineInput());
        const std::string lower = LCase(line);
        if (Contains(lower, "_r_factor_obs") || Contains(lower, "_r_factor_gt"))
            return Trim(TextFrom(line, " "));
    }
    return {};
}

CifNames ScanCifNames(InputFile& in) {
    CifNames names;
    bool dataBlockTaken = false;
    while (!in.Eof()) {
        const std::string line = Trim(in.LineInput());
        const std::string upper = UCase(line);
        const std::size_t codeKey = InStr(upper, "_DATABASE_CODE ");
        if (Left(upper, 12) == "DATA_CSD_CIF") {
            names.blockCode = Trim(Mid(line, 14));
        } else if (Left(upper, 18) == "_DATABASE_CODE_CSD") {
            names.csdCode = Trim(Mid(line, 19));
        } else if (Left(LCase(line), 34) == "_database_code_depnum_ccdc_archive") {
            const std::string value = Trim(Replace(Trim(Replace(Mid(line, 35), "'", "")), " ", "_"));
            // A bare "CCDC" with a short number is a placeholder, not a
            // deposition; an earlier value stays.
            if (!(Contains(value, "CCDC") && value.size() < 8)) names.deposition = value;
        } else if (codeKey != 0) {
            std::string value = Mid(line, static_cast<long long>(codeKey));
            if (Contains(value, "'")) {
                // 'CSD ABCDEF' gives the code after the word.
                value = Trim(Replace(TextFrom(value, "'"), "'", ""));
                if (Contains(value, " ")) value = Trim(TextAfter(value, " "));
            } else {
                value = Trim(TextAfter(value, " "));
            }
            names.plainCode = value;
        } else if (Left(upper, 25) == "_CHEMICAL_NAME_SYSTEMATIC" && !Contains(line, "?")) {
            std::string value = ChemicalNameValue(in, line);
            if (!value.empty()) names.systematic = value;
        } else if (Left(upper, 5) == "DATA_" && Right(upper, 6) != "GLOBAL" && line.size() >= 10) {
            // Only a short block name written wholly in upper case is a
            // code; a block line never counts as anything else.
            if (line.size() < 16 && !dataBlockTaken && line == upper) {
                names.dataBlock = Trim(Mid(line, 6));
                dataBlockTaken = true;
            }
        } else if (Left(upper, 21) == "_CHEMICAL_NAME_COMMON" && !Contains(line, "?")) {
            std::string value = ChemicalNameValue(in, line);
            if (!value.empty()) names.common = value;
        }
        // Loop headers and all other lines are passed over.
    }
    return names;
}

std::string ChemicalNameValue(InputFile& in, const std::string& line) {
    std::string value;
    if (Contains(line, " ")) {
        value = Trim(TextFrom(line, " "));
    } else {
        // A text field: the line after the item is its opening ";", the
        // next one the name. Both lines are used up.
        in.LineInput();
        value = Trim(in.LineInput());
        if (value.size() < 3) value.clear();
    }
    if (value.size() < 4) return {};
    value = Trim(Replace(value, "'", ""));
    return value.size() < 4 ? std::string() : value;
}

std::string ChooseCifName(const CifNames& names, const std::string& baseName) {
    std::string name;
    if (names.deposition.size() >= 8) {
        name = names.deposition;
    } else if (!names.csdCode.empty()) {
        name = names.csdCode;
    } else if (!names.blockCode.empty()) {
        name = names.blockCode;
    } else if (!names.plainCode.empty()) {
        name = names.plainCode;
    } else if (!names.dataBlock.empty()) {
        name = names.dataBlock;
    } else if (names.systematic.empty() && names.common.empty()) {
        name = baseName;
    } else if (names.systematic.empty()) {
        name = names.common;
    } else if (names.common.empty()) {
        name = names.systematic;
    } else {
        // The shorter chemical name makes the handier file name.
        name = names.common.size() <= names.systematic.size() ? names.common : names.systematic;
    }
    // A name that still holds the item's own word ("_chemical_name...") is
    // a misread value.
    if (Contains(UCase(name), "CHEMICAL")) name = baseName;
    if (Right(name, 1) == "," || Right(name, 1) == ".") name = DropLast(name, 1);
    FilCvrt::CleanMoleculeName(baseName, name);
    return name;
}

Cell ReadCifCell(InputFile& in) {
    Cell cell;
    // No end-of-file test: a file short of cell lines ends in error 62.
    while (!cell.Complete()) {
        const std::string line = Trim(in.LineInput());
        const std::string upper = UCase(line);
        // Lengths are found anywhere in the line and read from the fixed
        // column after "_cell_length_a"; angles are found at the line's
        // start and read from its first blank. A length whose value starts
        // before column 15 is misread, as it always was.
        if (Contains(upper, "_CELL_LENGTH_")) {
            cell.AddLength(Val(Mid(line, 15)));
        } else if (Left(upper, 12) == "_CELL_ANGLE_") {
            const double angle = Val(TextFrom(line, " "));
            // An unknown angle ("?") is taken as a right angle.
            cell.AddAngle(angle == 0 ? 90.0 : angle);
        }
    }
    return cell;
}

void Announce(Program& p, const Progress& progress, const std::string& text) {
    if (progress) progress(text);
    WaitSeconds(p, 1.0);
}

void WriteCell(OutputFile& out, const Cell& cell, const std::string& title, const std::string& rFactor) {
    out.WriteRecord({Field::Double(cell.lengths[0]), Field::Double(cell.lengths[1]),
                     Field::Double(cell.lengths[2]), Field::Text(title)});
    out.WriteRecord({Field::Double(cell.angles[0]), Field::Double(cell.angles[1]),
                     Field::Double(cell.angles[2]), Field::Text(rFactor)});
}

void WriteAtom(FilCvrt::SourceType type, InputFile& in, OutputFile& out, std::string& line) {
    double x = 0, y = 0, z = 0;
    FilCvrt::ReadCoordinates(type, in, line, x, y, z);
    std::string symbol;
    FilCvrt::GetElementSymbol(type, line, symbol);
    out.WriteRecord({Field::Double(x), Field::Double(y), Field::Double(z), Field::Text(symbol)});
}

void RenameInput(Program& p, const std::string& input, const std::string& newName) {
    if (LCase(input) == LCase(newName)) return;
    WriteFilConvN(p, Field::Text(newName));
    FilCvrt::MoveFile(p, input, newName);
}

}  // namespace
}  // namespace ravelo::readers::CSD
