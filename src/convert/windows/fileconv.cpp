// The FileConv window.
#include "convert/windows/fileconv.hpp"

#include "convert/driver.hpp"
#include "runtime/text.hpp"
#include "startup/shared.hpp"

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

}  // namespace

FileConv::FileConv(Program& p) : Form(p.ui, std::string(kName), "Convert Files to Kalmodyn Format"), p_(p) {
    using ui::ControlKind;
    ui::Control& drive = Add("Drive1", ControlKind::DriveList);
    drive.onNavigate = [this](int index) {
        ui::Control& list = (*this)["Drive1"];
        list.state.path = list.state.items[static_cast<std::size_t>(index)];
    };
    drive.onChange = [this] { ShowFolder(UCase((*this)["Drive1"].state.path) + "\\"); };

    ui::Control& dir = Add("Dir1", ControlKind::DirList);
    dir.onNavigate = [this](int index) {
        ui::Control& list = (*this)["Dir1"];
        const std::string& entry = list.state.items[static_cast<std::size_t>(index)];
        list.state.path = entry == ".." ? Parent(list.state.path) : Join(list.state.path, entry);
    };
    dir.onChange = [this] { ShowFolder((*this)["Dir1"].state.path); };

    ui::Control& files = Add("File1", ControlKind::FileList);
    files.onClick = [this] {
        ui::Control& list = (*this)["File1"];
        if (list.state.listIndex < 0) return;
        p_.CurrentFile = list.state.path + "\\" + list.SelectedItem();
        p_.fs.ChDir(list.state.path);
        if (!p_.CurrentFile.empty()) (*this)["Command1"].SetCaption("Click Here to Process the Selected File");
    };

    Add("Command1", ControlKind::Button, "Select a File Above to Process").onClick = [this] {
        p_.LibraryEntryCounter = 0;
        ConvertByType(p_);
    };
    Add("Command6", ControlKind::Button, "EXIT").onClick = [this] { Unload(); };
    Add("Label2", ControlKind::Label);
    Add("Label1", ControlKind::Label, VersionLine());
}

FileConv& FileConv::Of(Program& p) {
    auto& window = p.Window<FileConv>(kName);
    p.ui.Load(window);
    return window;
}

// The lists start at the current directory.
void FileConv::Form_Load() {
    ui::Control& drives = (*this)["Drive1"];
    drives.Clear();
    for (char letter : p_.fs.Drives().Letters()) drives.AddItem(LCase(std::string(1, letter)) + ":");
    ShowFolder(p_.fs.CurDir());
}

void FileConv::Form_Activate() {
    (*this)["Label2"].SetCaption(p_.IdentifyFilePrompt);
    (*this)["Command1"].SetCaption(p_.SelectFilePrompt);
    if (p_.InstallDrive.empty()) CheckInstallation(p_);
}

void FileConv::ShowFolder(const std::string& folder) {
    ui::Control& drives = (*this)["Drive1"];
    drives.state.path = LCase(Left(folder, 2));
    ui::Control& dirs = (*this)["Dir1"];
    dirs.state.path = folder;
    dirs.Clear();
    if (Parent(folder) != folder) dirs.AddItem("..");
    for (const std::string& name : p_.fs.SubDirs(folder)) dirs.AddItem(name);
    (*this)["File1"].state.path = folder;
    RefreshFiles();
}

void FileConv::RefreshFiles() {
    ui::Control& files = (*this)["File1"];
    files.Clear();
    for (const std::string& name : p_.fs.Dir(Join(files.state.path, files.state.pattern))) files.AddItem(name);
    p_.ui.Refresh(*this);
}

}  // namespace ravelo::windows
