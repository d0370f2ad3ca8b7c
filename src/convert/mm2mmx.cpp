// Force-field input files (MM2, MM3, MM4, MMX) to an SXS file.
#include "convert/mm2mmx.hpp"

#include <cstdint>
#include <map>

#include "convert/filcvrt.hpp"           // for SplitFileName, the records, ValidateOutputFile
#include "runtime/error.hpp"             // for Raise
#include "runtime/number.hpp"            // for NumText
#include "runtime/text.hpp"              // for Trim, LCase, Left, Right, Contains, TextBefore
#include "core/shared.hpp"            // for DeleteIfExists

namespace ravelo::MM2MMX {
namespace {

// Atom types above this (or below 1) take this table entry in the MM2 and
// MMX dialects.
constexpr std::int32_t kLastKnownType = 59;

// Element symbols by atom-type number, from 1 to the table's count.
class AtomTypes {
public:
    // Reads the installation's table: the count, then per entry the type
    // number and the symbol. A type number outside 1 to the count is a
    // subscript error; a count below 1 gives an empty table.
    explicit AtomTypes(Program& p);
    const std::string& operator[](std::int32_t type) const;

private:
    void CheckType(std::int32_t type) const;
    std::int32_t count_ = 0;
    // Only the entries the file fills, so a large count costs nothing until
    // its entries are read; an unfilled entry is empty.
    std::map<std::int32_t, std::string> symbols_;
};

// The last atom found.
struct Atom {
    double x = 0, y = 0, z = 0;
    std::string symbol;
};

// True for a value whose standard text (" 1.25", "-12.5") holds a point and
// is at least 5 characters long, leading blank or sign included: only such
// a value starts an atom. So 1.5, .25 and -.5 are passed over like the
// counts, flags and connection numbers between the atoms.
bool IsCoordinate(double value);

// Reads values until one is a coordinate; false when the file ends first.
bool FindNextX(InputFile& in, double& x);

}  // namespace

void Main(Program& p, const std::function<void()>& done) {
    std::string name = p.conversion.file;
    DropQuotes(name);
    name = Trim(name);
    ConvertFile(p, name, LCase(Right(name, 2)));
    if (!name.empty()) done();
}

void ConvertFile(Program& p, const std::string& fileName, const std::string& dialect) {
    const AtomTypes types(p);
    if (fileName.empty()) return;
    std::string title;
    FilCvrt::SplitFileName(p, fileName, title);
    const std::string outPath = TextBefore(fileName, ".") + ".sxs";  // no "." raises 5
    p.conversion.extension = Right(fileName, 4);
    DeleteIfExists(p, outPath);
    InputFile in = p.fs.OpenInput(fileName);
    OutputFile out = p.fs.OpenOutput(outPath);

    // The title line and the control lines.
    for (int i = 0; i < 3; ++i) in.LineInput();

    const bool symbolInLine = dialect == "m3" || dialect == "m4";
    const bool symbolByType = dialect == "m2" || dialect == "mx" || dialect == "np";
    Atom atom;
    while (!in.Eof()) {
        double x = 0;
        if (!FindNextX(in, x)) {
            // Values after the last atom that hold no coordinate: the last
            // atom (or, before any, an empty one) is written once more.
            FilCvrt::WriteAtomRecord(out, atom.x, atom.y, atom.z, atom.symbol, 1);
            break;
        }
        atom.x = x;
        atom.y = in.InputNumber();
        atom.z = in.InputNumber();
        if (symbolInLine) {
            atom.symbol = Trim(Left(in.InputText(), 2));
        } else {
            const std::int32_t type = in.InputLong();
            in.InputNumber();  // the value after the type is not used
            // In the other dialects the symbol stays what it was.
            if (symbolByType)
                atom.symbol = types[type >= 1 && type <= kLastKnownType ? type : kLastKnownType];
        }
        // Every atom record of these files carries 1 where other readers put
        // the serial number, and the end record carries 2 (that 1 plus 1):
        // the form these conversions have always had, kept as it is.
        FilCvrt::WriteAtomRecord(out, atom.x, atom.y, atom.z, atom.symbol, 1);
    }
    FilCvrt::WriteEndRecord(out, title, 2);
    out.Close();
    FilCvrt::ValidateOutputFile(p, outPath);
}

namespace {

AtomTypes::AtomTypes(Program& p) {
    InputFile in = p.fs.OpenInput(p.InstallDrive + "\\ravelo\\mmatoms.dat");
    count_ = in.InputLong();
    for (std::int32_t i = 1; i <= count_; ++i) {
        const std::int32_t type = in.InputLong();
        CheckType(type);
        symbols_[type] = in.InputText();
    }
}

const std::string& AtomTypes::operator[](std::int32_t type) const {
    static const std::string kUnfilled;
    CheckType(type);
    const auto found = symbols_.find(type);
    return found == symbols_.end() ? kUnfilled : found->second;
}

void AtomTypes::CheckType(std::int32_t type) const {
    if (type < 1 || type > count_) Raise(kSubscript);
}

bool IsCoordinate(double value) {
    const std::string text = NumText(value);
    return Contains(text, ".") && text.size() >= 5;
}

bool FindNextX(InputFile& in, double& x) {
    while (true) {
        const double value = in.InputNumber();
        if (IsCoordinate(value)) {
            x = value;
            return true;
        }
        if (in.Eof()) return false;
    }
}

}  // namespace
}  // namespace ravelo::MM2MMX
