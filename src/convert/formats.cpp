#include "convert/formats.hpp"

#include <algorithm>

#include "convert/alchemy.hpp"
#include "convert/csd.hpp"
#include "convert/m3d.hpp"
#include "convert/mdl.hpp"
#include "convert/mopac.hpp"
#include "convert/pdb.hpp"
#include "convert/tripos.hpp"
#include "convert/xcc.hpp"
#include "convert/xcx.hpp"
#include "convert/xyz.hpp"

namespace ravelo::formats {
namespace {

// Readers that need neither the window's memory nor its progress line.
template <void (*convert)(Program&, const std::string&)>
void Plain(Program& p, const std::string& name, ReaderMemory&, const Progress&) {
    convert(p, name);
}

// Readers that show progress texts.
template <void (*convert)(Program&, const std::string&, const std::function<void(const std::string&)>&)>
void WithProgress(Program& p, const std::string& name, ReaderMemory&, const Progress& progress) {
    convert(p, name, progress);
}

void Schakal(Program& p, const std::string& name, ReaderMemory& memory, const Progress&) {
    readers::Schakal::ConvertFile(p, name, memory.schakal);
}

void M3D(Program& p, const std::string& name, ReaderMemory& memory, const Progress&) {
    readers::M3D::ConvertFile(p, name, memory.m3dLastAtom);
}

constexpr Format kFormats[] = {
    {"XYZ",
     {"XYZX for Kalmodyn", "XYZ Structural Data Files => Kalmodyn's Data Files", "Enter the XYZ file's Name",
      "Convert another XYZ file?"},
     Plain<readers::XYZ::ConvertFile>},
    {"MDL",
     {"MDLX for Kalmodyn", "MDL (MOL/SDF) Structural Data Files => Kalmodyn's Data Files",
      "Enter the MDL file's Name", "Convert another MDL file?"},
     Plain<readers::MDL::ConvertFile>},
    // Every line that begins with "HEADER" starts an entry. "Kalmodyn3's"
    // is the window's designed title.
    {"PDB",
     {"PDBX for Kalmodyn", "Brookhaven Protein Database Files => Kalmodyn3's Data Files",
      "Enter the Name of the PDB file", "Convert another PDB file?"},
     WithProgress<readers::PDB::ConvertFile>,
     "HEADER",
     ".pdb"},
    // Crystal structures (.cif, .cmf, .csd). Every CIF data block holds one
    // "cell_length_a" item.
    {"CSD",
     {"CSDX for Kalmodyn", "Cambridge Crystallographic Database Files => Kalmodyn's Data Files",
      "Enter the Name of the CSD file", "Convert another CSD file?"},
     WithProgress<readers::CSD::ConvertFile>,
     "cell_length_a",
     ""},
    {"XCC",
     {"XCCX for Kalmodyn", "XCC Structural Data Files => Kalmodyn's Data Files", "Enter the XCC file's Name",
      "Convert another XCC file?"},
     WithProgress<readers::XCC::ConvertFile>},
    {"XCX",
     {"XCXX for Kalmodyn", "XCX Structural Data Files => Kalmodyn's Data Files", "Enter the XCX file's Name",
      "Convert another XCX file?"},
     Plain<readers::XCX::ConvertFile>},
    {"Tripos",
     {"TRIPX for Kalmodyn", "Tripos/Sybyl Structural Data Files to Kalmodyn's Data Files",
      "Enter the Tripos file's Name", "Convert another Tripos file?"},
     Plain<readers::Tripos::ConvertFile>},
    // No extension reaches it: it is opened by its name.
    {"MOPAC",
     {"MOPACX for Kalmodyn", "MOPAC Structural Data Files to Kalmodyn's Data Files",
      "Enter the MOPAC file's Name", "Convert another MOPAC file?"},
     Plain<readers::MOPAC::ConvertFile>},
    {"Alchemy",
     {"ALCHX for Kalmodyn", "Alchemy Structural Data Files to Kalmodyn's Data Files",
      "Enter the Alchemy file's Name", "Convert another Alchemy file?"},
     Plain<readers::Alchemy::ConvertFile>},
    {"Schakal",
     {"SCHAKX for Kalmodyn", "Schakal Files => Kalmodyn's Data Files", "Enter the name of the Schakal file",
      "Convert another Schakal file?"},
     Schakal},
    {"M3D",
     {"M3DX.EXE for Kalmodyn", "M3D Database Files => Kalmodyn's Data Files", "Enter the Name of the M3D file",
      "Convert another M3D file?"},
     M3D},
};

// In the order of FileTypes. The extension is always three characters, so
// "mol2" never reaches the Tripos window, and ".mop" files go to it rather
// than to the MOPAC window: both kept as designed.
constexpr FileType kFileTypes[] = {
    {"alc", Route::Window, "Alchemy"},
    {"cif", Route::Window, "CSD"},
    {"cmf", Route::Window, "CSD"},
    {"csd", Route::Window, "CSD"},
    {"m3d", Route::Window, "M3D"},
    {"mol2", Route::Window, "Tripos"},
    {"pdb", Route::Window, "PDB"},
    {"ent", Route::Window, "PDB"},
    {"sch", Route::Window, "Schakal"},
    {"xyz", Route::Window, "XYZ"},
    {"sdf", Route::Window, "MDL"},
    {"mop", Route::Window, "Tripos"},
    {"mm2", Route::ForceField},
    {"mm3", Route::ForceField},
    {"mm4", Route::ForceField},
    {"mmx", Route::ForceField},
    {"inp", Route::Nothing},
    {"xcx", Route::Window, "XCX"},
    {"xcc", Route::Window, "XCC", "cc"},
    {"mol", Route::Window, "MDL", ""},
};

}  // namespace

std::span<const Format> Formats() { return kFormats; }
std::span<const FileType> FileTypes() { return kFileTypes; }

const Format* FormatOfWindow(std::string_view window) {
    const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                     [&](const Format& format) { return format.window == window; });
    return found == std::end(kFormats) ? nullptr : found;
}

const FileType* TypeOfExtension(std::string_view extension) {
    const auto* found = std::find_if(std::begin(kFileTypes), std::end(kFileTypes),
                                     [&](const FileType& type) { return type.extension == extension; });
    return found == std::end(kFileTypes) ? nullptr : found;
}

std::string FileTypesText() {
    std::string text;
    for (const FileType& type : kFileTypes) text += type.listedAs.value_or(type.extension);
    return text;
}

}  // namespace ravelo::formats
