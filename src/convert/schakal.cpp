// Schakal plotting files to an SXS file, one atom record per "ATOM" field.
#include "convert/schakal.hpp"

#include "convert/filcvrt.hpp"  // for WriteAtomRecord
#include "runtime/error.hpp"    // for Raise
#include "runtime/number.hpp"   // for Val
#include "runtime/text.hpp"     // for Trim, UCase, Left, Mid, TextFrom, TextUpToIncluding
#include "core/shared.hpp"   // for DeleteIfExists

namespace ravelo::readers::Schakal {
namespace {

// The symbol is the label's first two characters as they stand, or its
// first alone when the second is a digit 1 to 9: C1 gives C, CL stays CL,
// C0 stays C0, and a one-letter label followed by a blank keeps the blank.
std::string SymbolOf(const std::string& label);

// Table entries by atom number, from 1 to kMaxAtoms.
template <class T>
T& Entry(std::vector<T>& table, std::int32_t atom) {
    if (atom < 1 || atom > kMaxAtoms) Raise(kSubscript);
    return table[static_cast<std::size_t>(atom)];
}

}  // namespace

void ConvertFile(Program& p, const std::string& fileName, Tables& t) {
    if (fileName.empty()) return;
    const std::string outPath = TextUpToIncluding(fileName, ".") + "SXS";
    DeleteIfExists(p, outPath);
    t.atomCounter = 0;
    OutputFile out = p.fs.OpenOutput(outPath);
    InputFile in = p.fs.OpenInput(fileName);

    while (!in.Eof()) {
        // One comma-separated field: a line with commas is several fields,
        // and only one that starts with "ATOM" (in any case, ATOMS too) is
        // an atom.
        const std::string field = Trim(in.InputText());
        if (UCase(Left(field, 4)) != "ATOM") continue;
        const std::int32_t atom = ++t.atomCounter;
        std::string rest = Trim(Mid(field, 5));
        Entry(t.labels, atom) = SymbolOf(rest);
        std::string value;
        NextSchakalField(rest, value);
        Entry(t.x, atom) = Val(value);
        NextSchakalField(rest, value);
        Entry(t.y, atom) = Val(value);
        // A field is taken only up to a blank, so a z that ends the line
        // reads 0; only a further word after it lets z be read. Kept as it
        // has always been read.
        NextSchakalField(rest, value);
        Entry(t.z, atom) = Val(value);
        FilCvrt::WriteAtomRecord(out, Entry(t.x, atom), Entry(t.y, atom), Entry(t.z, atom),
                                 Entry(t.labels, atom), atom);
    }
    out.Close();
}

void NextSchakalField(std::string& line, std::string& field) {
    line = Trim(TextFrom(line, " "));
    field = TextUpToIncluding(line, " ");
}

namespace {

std::string SymbolOf(const std::string& label) {
    const std::string second = Mid(label, 2, 1);
    if (Val(second) > 0) return Left(label, 1);
    return Left(label, 1) + second;
}

}  // namespace
}  // namespace ravelo::readers::Schakal
