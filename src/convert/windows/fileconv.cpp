// The file converter's job and its FileConv window.
#include "convert/windows/fileconv.hpp"

#include <memory>

#include "convert/filcvrt.hpp"
#include "convert/formats.hpp"
#include "convert/mm2mmx.hpp"
#include "convert/windows/converter_window.hpp"
#include "runtime/error.hpp"
#include "runtime/number.hpp"
#include "runtime/text.hpp"
#include "core/shared.hpp"
#include "ui/host.hpp"

namespace ravelo::windows {
namespace {

// "C:\" + "data" is "C:\data"; "C:\data" + "x" is "C:\data\x".
std::string Join(const std::string& folder, const std::string& name) {
    return (!folder.empty() && folder.back() == '\\') ? folder + name : folder + "\\" + name;
}

// The folder a path lies in; a drive's root stays where it is.
std::string Parent(const std::string& folder) {
    std::string trimmed = folder;
    if (trimmed.size() > 3 && trimmed.back() == '\\') trimmed.pop_back();
    const std::size_t slash = InStrRev(trimmed, "\\");
    if (slash == 0) return trimmed;
    std::string parent = Left(trimmed, static_cast<long long>(slash) - 1);
    if (parent.size() == 2 && parent[1] == ':') parent += '\\';
    return parent;
}

using ui::ControlKind;

}  // namespace

FileConv::FileConv(Program& p)
    : Form(p.ui, std::string(kName), "Convert Files to Kalmodyn Format"),
      p_(p),
      Drive1_(Add("Drive1", ControlKind::DriveList)),
      Dir1_(Add("Dir1", ControlKind::DirList)),
      File1_(Add("File1", ControlKind::FileList)),
      Command1_(Add("Command1", ControlKind::Button, "Select a File Above to Process")),
      Command6_(Add("Command6", ControlKind::Button, "EXIT")),
      Label2_(Add("Label2", ControlKind::Label)),
      Label1_(Add("Label1", ControlKind::Label, VersionLine())) {
    Drive1_.onNavigate = [this](int index) {
        Drive1_.state.path = Drive1_.state.items[static_cast<std::size_t>(index)];
    };
    Drive1_.onChange = [this] { ShowFolder(UCase(Drive1_.state.path) + "\\"); };

    Dir1_.onNavigate = [this](int index) {
        const std::string& entry = Dir1_.state.items[static_cast<std::size_t>(index)];
        Dir1_.state.path = entry == ".." ? Parent(Dir1_.state.path) : Join(Dir1_.state.path, entry);
    };
    Dir1_.onChange = [this] { ShowFolder(Dir1_.state.path); };

    File1_.onClick = [this] {
        if (File1_.state.listIndex < 0) return;
        p_.conversion.file = File1_.state.path + "\\" + File1_.SelectedItem();
        p_.fs.ChDir(File1_.state.path);
        if (!p_.conversion.file.empty()) Command1_.SetCaption("Click Here to Process the Selected File");
    };

    Command1_.onClick = [this] { ConvertByType(p_); };
    Command6_.onClick = [this] { Unload(); };
}

FileConv& FileConv::Of(Program& p) {
    auto& window = p.Window<FileConv>(kName);
    p.ui.Load(window);
    return window;
}

// The lists start at the current directory.
void FileConv::Form_Load() {
    Drive1_.Clear();
    for (char letter : p_.fs.Drives().Letters()) Drive1_.AddItem(LCase(std::string(1, letter)) + ":");
    ShowFolder(p_.fs.CurDir());
}

void FileConv::Form_Activate() {
    Label2_.SetCaption(std::string(kIdentifyFilePrompt));
    Command1_.SetCaption(std::string(kSelectFilePrompt));
    if (p_.InstallDrive.empty()) CheckInstallation(p_);
}

void FileConv::ShowFolder(const std::string& folder) {
    Drive1_.state.path = LCase(Left(folder, 2));
    Dir1_.state.path = folder;
    Dir1_.Clear();
    if (Parent(folder) != folder) Dir1_.AddItem("..");
    for (const std::string& name : p_.fs.SubDirs(folder)) Dir1_.AddItem(name);
    File1_.state.path = folder;
    RefreshFiles();
}

void FileConv::ShowProcessing() {
    Command1_.SetCaption("Processing The File");
    p_.ui.Refresh(*this);
}

void FileConv::ShowDone(bool pause) {
    Command1_.SetCaption("Done");
    p_.ui.Refresh(*this);
    if (pause) WaitSeconds(p_, 1.0);
    Command1_.SetCaption(std::string(kSelectFilePrompt));
    RefreshFiles();
}

void FileConv::ShowMessage(std::string text) {
    Label2_.SetCaption(std::move(text));
    p_.ui.Refresh(*this);
}

void FileConv::RefreshFiles() {
    File1_.Clear();
    for (const std::string& name : p_.fs.Dir(Join(File1_.state.path, File1_.state.pattern)))
        File1_.AddItem(name);
    p_.ui.Refresh(*this);
}

}  // namespace ravelo::windows

namespace ravelo {
namespace {

using windows::ConverterWindow;
using windows::FileConv;


bool HasWildcard(std::string_view text) { return Contains(text, "*") || Contains(text, "?"); }


// Converts one file and pauses a second between files of a plain job.
void ConvertOne(Program& p) {
    ConvertByType(p);
    if (p.LibraryCount == 0) WaitSeconds(p, 1.0);
}

}  // namespace

void FileConvStart(Program& p) {
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
        DropQuotes(p.CommandTail);
        p.CommandTail = LCase(Trim(p.CommandTail));
        p.conversion.file = p.CommandTail;
    }
    if (p.conversion.file.empty()) return;
    FileConv& converter = FileConv::Of(p);
    converter.ShowProcessing();

    // The file gets a safe name on disk before it is read: blanks, points
    // and commas of the name (folders included) become "_".
    const std::string extension = LCase(Right(p.conversion.file, 3));
    std::string base = DropLast(p.conversion.file, 4);
    base = Replace(Replace(Replace(base, " ", "_"), ".", "_"), ",", "_");
    const std::string safeName = base + "." + extension;
    if (LCase(safeName) != LCase(p.conversion.file)) {
        FilCvrt::MoveFile(p, p.conversion.file, safeName);
        p.conversion.file = safeName;
    }

    p.conversion.extension = extension;
    // Force-field input files have no window: they are converted here and
    // reported on the FileConv window.
    const formats::FileType* type = formats::TypeOfExtension(extension);
    if (type != nullptr && type->route == formats::Route::ForceField) {
        MM2MMX::Main(p, [&p] { FileConv::Of(p).ShowDone(); });
        return;
    }
    const std::string window = ConverterWindowFor(p, extension);
    if (!window.empty()) {
        auto& converterWindow = p.Window<ConverterWindow>(window);
        converterWindow.fileName = p.conversion.file;
        p.ui.Show(converterWindow, false);
        return;
    }
    if (!converter.Visible()) return;
    converter.ShowMessage("Sorry, this file type is not among those currently processed.");
    WaitSeconds(p, 5.0);
    converter.ShowMessage(std::string(kIdentifyFilePrompt));
}

std::string ConverterWindowFor(const Program& p, std::string_view extension) {
    const formats::FileType* type = formats::TypeOfExtension(extension);
    if (type == nullptr || type->route != formats::Route::Window || !p.HasWindow(type->window)) return {};
    return std::string(type->window);
}

void RegisterConverter(Program& p) {
    p.utilities["fileconv"] = FileConvStart;
    p.RegisterWindow(std::string(FileConv::kName), [](Program& program) { return std::make_unique<FileConv>(program); });
    for (const formats::Format& format : formats::Formats()) {
        p.RegisterWindow(std::string(format.window),
                         [&format](Program& program) { return std::make_unique<ConverterWindow>(program, format); });
    }
}

}  // namespace ravelo
