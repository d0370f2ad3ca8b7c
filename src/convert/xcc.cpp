// Crystal coordinate files (.xcc) to an XXS file.
#include "convert/xcc.hpp"

#include <cmath>
#include <cstdint>
#include <vector>

#include "convert/filcvrt.hpp"  // for SplitFileName, RoundToPlaces, the records
#include "runtime/error.hpp"    // for Raise
#include "runtime/number.hpp"   // for CheckedResult
#include "runtime/text.hpp"     // for TextBefore
#include "core/shared.hpp"   // for DeleteIfExists, WaitSeconds

namespace ravelo::readers::XCC {
namespace {

// The reader's tables hold this many atoms; one more is out of range.
constexpr std::size_t kMaxAtoms = 10000;

struct Atom {
    double fx = 0, fy = 0, fz = 0;  // fractional, as read
    std::string symbol;
    double x = 0, y = 0, z = 0;  // Cartesian
};

// The two factors of one cell angle's shear: the cosine and the tangent of
// its departure from a right angle.
struct Shear {
    double c = 1, t = 0;
};
Shear ShearOf(double angle);

// Fractional to Cartesian coordinates in the modeller's frame: c along Z,
// b in the YZ plane.
void Orthogonalise(std::vector<Atom>& atoms, double a, double b, double c, Shear alpha, Shear beta,
                   Shear gamma);

}  // namespace

void ConvertFile(Program& p, const std::string& fileName,
                 const std::function<void(const std::string&)>& progress) {
    if (fileName.empty()) return;
    std::string baseName;
    FilCvrt::SplitFileName(p, fileName, baseName);
    // Cut at the first "." of the whole path, a dot in a folder name included.
    const std::string outPath = TextBefore(fileName, ".") + ".xxs";
    p.conversion.extension = ".XCC";
    DeleteIfExists(p, outPath);
    if (progress) progress(baseName);
    WaitSeconds(p, 1.0);

    std::vector<Atom> atoms;
    double a = 0, b = 0, c = 0, alpha = 0, beta = 0, gamma = 0;
    std::string name, rFactor;
    {
        InputFile in = p.fs.OpenInput(fileName);
        a = in.InputNumber();
        b = in.InputNumber();
        c = in.InputNumber();
        name = in.InputText();
        alpha = in.InputNumber();
        beta = in.InputNumber();
        gamma = in.InputNumber();
        rFactor = in.InputText();
        while (!in.Eof()) {
            // The whole structure is read before anything is written, so an
            // atom past the tables' end leaves no output at all.
            if (atoms.size() == kMaxAtoms) Raise(kSubscript);
            Atom atom;
            atom.fx = in.InputNumber();
            atom.fy = in.InputNumber();
            atom.fz = in.InputNumber();
            atom.symbol = in.InputText();
            atoms.push_back(std::move(atom));
        }
    }
    // A file without atoms is taken as one atom of zeros without a symbol,
    // which leaves too short a file to keep.
    if (atoms.empty()) atoms.emplace_back();

    Orthogonalise(atoms, a, b, c, ShearOf(alpha), ShearOf(beta), ShearOf(gamma));

    OutputFile out = p.fs.OpenOutput(outPath);
    std::int32_t serial = 0;
    for (Atom& atom : atoms) {
        FilCvrt::RoundToPlaces(atom.x, 6);
        FilCvrt::RoundToPlaces(atom.y, 6);
        FilCvrt::RoundToPlaces(atom.z, 6);
        FilCvrt::WriteAtomRecord(out, atom.x, atom.y, atom.z, atom.symbol, ++serial);
    }
    // The "#" marks a title taken from a crystal file.
    FilCvrt::WriteEndRecord(out, "#" + name, serial + 1);
    if (rFactor != "+") out.PrintLine("R_Factor = " + rFactor);
    out.Close();
    FilCvrt::ValidateOutputFile(p, outPath);
}

namespace {

Shear ShearOf(double angle) {
    const double departure = kDegToRad * (angle - 90);
    return {std::cos(departure), std::tan(departure)};
}

// Three shears, one per cell angle, each a pass over all atoms: alpha tilts
// b towards c, beta a towards c, gamma a towards b. This is exact for cells
// with at least two right angles; for triclinic cells the result is the
// modeller's long-standing approximation, X = a fx sin(beta) sin(gamma),
// Y = b fy sin(alpha) + a fx sin(beta) cos(gamma),
// Z = c fz + b fy cos(alpha) + a fx cos(beta), which is kept rather than
// replaced by the full orthogonalisation matrix so that structures keep
// the coordinates they always had.
void Orthogonalise(std::vector<Atom>& atoms, double a, double b, double c, Shear alpha, Shear beta,
                   Shear gamma) {
    for (Atom& atom : atoms) {
        atom.x = CheckedResult(a * atom.fx);
        atom.y = CheckedResult(b * atom.fy);
        atom.z = CheckedResult(c * atom.fz);
    }
    for (Atom& atom : atoms) {
        atom.y = CheckedResult(alpha.c * atom.y);
        atom.z = CheckedResult(atom.z - alpha.t * atom.y);
    }
    for (Atom& atom : atoms) {
        atom.x = CheckedResult(beta.c * atom.x);
        atom.z = CheckedResult(atom.z - beta.t * atom.x);
    }
    for (Atom& atom : atoms) {
        atom.x = CheckedResult(gamma.c * atom.x);
        atom.y = CheckedResult(atom.y - gamma.t * atom.x);
    }
}

}  // namespace
}  // namespace ravelo::readers::XCC
