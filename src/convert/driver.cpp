// The conversion driver.
#include "convert/driver.hpp"

#include <memory>

#include "convert/filcvrt.hpp"
#include "convert/mm2mmx.hpp"
#include "convert/windows/fileconv.hpp"
#include "convert/windows/formats.hpp"
#include "runtime/error.hpp"
#include "runtime/number.hpp"
#include "runtime/text.hpp"
#include "startup/shared.hpp"

namespace ravelo {
namespace {

using windows::ConverterWindow;
using windows::FileConv;

// Extensions and the windows that convert them; the first match wins.
struct Route {
    std::string_view extension;
    std::string_view window;
};
constexpr Route kRoutes[] = {
    {"alc", "Alchemy"}, {"cif", "CSD"}, {"csd", "CSD"},    {"cmf", "CSD"},    {"pdb", "PDB"},
    {"ent", "PDB"},     {"xyz", "XYZ"}, {"xcx", "XCX"},    {"xcc", "XCC"},    {"sch", "Schakal"},
    {"m3d", "M3D"},     {"mol", "MDL"}, {"sdf", "MDL"},
    // The extension is always three characters, so "mol2" never matches; and
    // ".mop" files go to the Tripos window. Both are kept as designed.
    {"mol2", "Tripos"}, {"mop", "Tripos"},
};

bool HasWildcard(std::string_view text) { return Contains(text, "*") || Contains(text, "?"); }

// A last word of one character whose value is not 0 is the library count;
// the text before it is the file. Gives the blank's position (from 1), 0
// when there is no count.
std::size_t FindLibraryCount(const std::string& tail, std::int32_t& count) {
    for (std::size_t i = tail.size(); i >= 1; --i) {
        if (tail[i - 1] != ' ') continue;
        const std::string last = Mid(tail, static_cast<long long>(i));
        if (last.size() < 3 && Val(last) != 0) {
            count = ToInt32(Val(last));
            return i;
        }
    }
    return 0;
}

// Converts one file and pauses a second between files of a plain job.
void ConvertOne(Program& p) {
    ConvertByType(p);
    if (p.LibraryCount == 0) WaitSeconds(p, 1.0);
}

}  // namespace

void FileConvStart(Program& p) {
    p.ConvertResult = p.NoText;
    p.LibraryEntryCounter = 0;
    p.LibraryCount = 0;
    p.CommandTail = Trim(p.CommandTail);
    if (p.CommandTail.empty()) {
        p.ui.Show(p.Window(FileConv::kName), false);
        return;
    }
    if (Contains(p.CommandTail, " ")) {
        if (const std::size_t blank = FindLibraryCount(p.CommandTail, p.LibraryCount))
            p.CommandTail = Trim(Left(p.CommandTail, static_cast<long long>(blank) - 1));
    }
    if (!HasWildcard(p.CommandTail)) {
        ConvertOne(p);
    } else {
        std::string dir;
        GetFilePath(p.CommandTail, dir);
        // The matches are listed once, in name order, before the first
        // conversion renames anything.
        for (const std::string& name : p.fs.Dir(p.CommandTail)) {
            p.CommandTail = dir + name;
            ConvertOne(p);
        }
    }
    ui::Form* converter = p.ExistingWindow(FileConv::kName);
    if (converter && converter->Visible()) {
        p.ui.Unload(*converter);
    } else {
        WriteFilConvStat(p);
    }
    EndProgram(0);
}

void ConvertByType(Program& p) {
    if (Contains(p.CommandTail, ".") && p.CommandTail.size() > 3) {
        // A quoted name loses its quotes.
        if (Contains(p.CommandTail, "\"")) p.CommandTail = DropFirst(DropLast(p.CommandTail, 1));
        p.CommandTail = LCase(Trim(p.CommandTail));
        p.CurrentFile = p.CommandTail;
    }
    if (p.CurrentFile.empty()) return;
    FileConv& converter = FileConv::Of(p);
    converter["Command1"].SetCaption("Processing The File");
    p.ui.Refresh(converter);

    // The file gets a safe name on disk before it is read: blanks, points
    // and commas of the name (folders included) become "_".
    const std::string extension = LCase(Right(p.CurrentFile, 3));
    std::string base = DropLast(p.CurrentFile, 4);
    base = Replace(Replace(Replace(base, " ", "_"), ".", "_"), ",", "_");
    const std::string safeName = base + "." + extension;
    if (LCase(safeName) != LCase(p.CurrentFile)) {
        FilCvrt::MoveFile(p, p.CurrentFile, safeName);
        p.CurrentFile = safeName;
    }

    p.InputExt = extension;
    // Force-field input files have no window: they are converted here and
    // reported on the FileConv window.
    if (extension == "mm2" || extension == "mm3" || extension == "mm4" || extension == "mmx") {
        MM2MMX::Main(p);
        return;
    }
    const std::string window = ConverterWindowFor(p, extension);
    if (!window.empty()) {
        auto& converterWindow = p.Window<ConverterWindow>(window);
        converterWindow.fileName = p.CurrentFile;
        p.ui.Show(converterWindow, false);
        return;
    }
    if (!converter.Visible()) return;
    converter["Label2"].SetCaption("Sorry, this file type is not among those currently processed.");
    p.ui.Refresh(converter);
    WaitSeconds(p, 5.0);
    converter["Label2"].SetCaption(p.IdentifyFilePrompt);
    p.ui.Refresh(converter);
}

std::string ConverterWindowFor(const Program& p, std::string_view extension) {
    for (const Route& route : kRoutes) {
        if (route.extension == extension) return p.HasWindow(route.window) ? std::string(route.window) : std::string();
    }
    return {};
}

void RegisterConverter(Program& p) {
    p.utilities["fileconv"] = FileConvStart;
    p.RegisterWindow(std::string(FileConv::kName), [](Program& program) { return std::make_unique<FileConv>(program); });
    p.RegisterWindow("XYZ", [](Program& program) { return std::make_unique<windows::XYZ>(program); });
    p.RegisterWindow("MDL", [](Program& program) { return std::make_unique<windows::MDL>(program); });
    p.RegisterWindow("PDB", [](Program& program) { return std::make_unique<windows::PDB>(program); });
    p.RegisterWindow("CSD", [](Program& program) { return std::make_unique<windows::CSD>(program); });
    p.RegisterWindow("XCC", [](Program& program) { return std::make_unique<windows::XCC>(program); });
    p.RegisterWindow("XCX", [](Program& program) { return std::make_unique<windows::XCX>(program); });
    p.RegisterWindow("Tripos", [](Program& program) { return std::make_unique<windows::Tripos>(program); });
    // Never opened by the driver; reached by its name.
    p.RegisterWindow("MOPAC", [](Program& program) { return std::make_unique<windows::MOPAC>(program); });
    p.RegisterWindow("Alchemy", [](Program& program) { return std::make_unique<windows::Alchemy>(program); });
    p.RegisterWindow("Schakal", [](Program& program) { return std::make_unique<windows::Schakal>(program); });
    p.RegisterWindow("M3D", [](Program& program) { return std::make_unique<windows::M3D>(program); });
}

}  // namespace ravelo
