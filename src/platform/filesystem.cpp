// The file services over the host's file calls. Every Windows-form path is first found
// on the host case-insensitively (HostPath); every refusal of the host ends in
// one of the classic errors through RaiseFor.
#include "platform/filesystem.hpp"

#include <cctype>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <utility>

#include "platform/fault_injection.hpp"
#include "platform/folder_listings.hpp"
#include "platform/host_files.hpp"
#include "platform/host_path.hpp"
#include "runtime/error.hpp"
#include "runtime/text.hpp"   // for LCase

namespace ravelo::platform {
namespace {

constexpr std::size_t kCopyChunk = std::size_t{1} << 20;

using faults::CountFileOperation;

bool HasNul(std::string_view s) { return s.find('\0') != std::string_view::npos; }
char Lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool HasWildcard(std::string_view name) { return name.find_first_of("*?") != std::string_view::npos; }

// "*" any run of characters, "?" exactly one, letters in any case.
bool MatchWildcard(std::string_view pattern, std::string_view name) {
    std::size_t p = 0, n = 0;
    std::size_t starP = std::string_view::npos, starN = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            starP = p++;
            starN = n;
        } else if (p < pattern.size() && (pattern[p] == '?' || Lower(pattern[p]) == Lower(name[n]))) {
            ++p;
            ++n;
        } else if (starP != std::string_view::npos) {
            p = starP + 1;
            n = ++starN;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') ++p;
    return p == pattern.size();
}

// As Windows matches: a final ".*" may also match a name without any
// extension, so "*.*" names every file and "molecule.*" names "molecule".
bool MatchName(std::string_view pattern, std::string_view name) {
    if (MatchWildcard(pattern, name)) return true;
    if (pattern.size() >= 2 && pattern.substr(pattern.size() - 2) == ".*" &&
        name.find('.') == std::string_view::npos) {
        return MatchWildcard(pattern.substr(0, pattern.size() - 2), name);
    }
    return false;
}

// The status of the file at a host path; a link counts as what it points
// to unless `followLinks` is false.
bool StatOf(const std::string& hostPath, host::Status& st, bool followLinks = true) {
    return !HasNul(hostPath) && host::GetStatus(hostPath, st, followLinks);
}

bool IsFolder(const std::string& hostPath) {
    host::Status st;
    return StatOf(hostPath, st) && st.kind == host::Kind::Folder;
}

bool IsFile(const std::string& hostPath, bool followLinks = true) {
    host::Status st;
    return StatOf(hostPath, st, followLinks) && st.kind == host::Kind::File;
}

// A missing name: "File not found" when its folder is there, else "Path not
// found".
[[noreturn]] void RaiseMissing(const std::string& hostPath) {
    Raise(IsFolder(Parent(hostPath)) ? kFileNotFound : kPathNotFound);
}

[[noreturn]] void RaiseFor(int error, const std::string& hostPath) {
    switch (error) {
    case ENOENT: RaiseMissing(hostPath);
    case ENOTDIR: Raise(kPathNotFound);   // a file where a folder should be
    default: Raise(kPathFileAccess);       // permission, a folder in the way, a full disk ...
    }
}

host::Handle OpenOrRaise(const std::string& hostPath, host::OpenFor mode) {
    CountFileOperation();
    // An open that may create the file changes its folder.
    std::optional<ListingsUpdate> update;
    if (mode != host::OpenFor::Read) update.emplace(std::string(), hostPath);
    const host::Handle file = host::Open(hostPath, mode);
    if (update) update->Done(file != host::kNoHandle);
    if (file == host::kNoHandle) RaiseFor(errno, hostPath);
    return file;
}

// A rename over the target, with the folder listings kept current.
bool Rename(const std::string& from, const std::string& to) {
    ListingsUpdate update(from, to);
    const bool renamed = host::RenameOver(from, to);
    update.Done(renamed);
    return renamed;
}

bool MakeFolder(const std::string& hostPath) {
    ListingsUpdate update(std::string(), hostPath);
    const bool made = host::MakeFolder(hostPath);
    update.Done(made);
    return made;
}

class FileSource final : public ByteSource {
public:
    explicit FileSource(host::Handle file) : file_(file) {}
    ~FileSource() override { host::Close(file_); }
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    bool Status(host::Status& st) const { return host::GetStatus(file_, st); }
    bool IsFolder() const {
        host::Status st;
        return !Status(st) || st.kind == host::Kind::Folder;
    }

    std::size_t Read(char* buf, std::size_t n) override {
        const std::ptrdiff_t got = host::Read(file_, buf, n);
        if (got < 0) Raise(kPathFileAccess);
        return static_cast<std::size_t>(got);
    }

private:
    host::Handle file_;
};

// Writes straight to an open file.
class FileSink final : public ByteSink {
public:
    explicit FileSink(host::Handle file) : file_(file) {}
    ~FileSink() override { host::Close(file_); }
    FileSink(const FileSink&) = delete;
    FileSink& operator=(const FileSink&) = delete;

    void Write(const char* data, std::size_t n) override {
        if (!faults::WriteAll(file_, data, n)) RaiseWriteError(errno);
    }
    void Flush() override {
        if (!host::Sync(file_)) RaiseWriteError(errno);
    }

private:
    host::Handle file_;
};

// Names in a folder, "." and ".." left out; `folders` chooses sub-folders or
// regular files (links count as what they point to). A folder that cannot be
// read has no names.
std::vector<std::string> FolderEntries(const std::string& folder, bool folders) {
    std::vector<std::string> names;
    std::vector<host::Entry> entries;
    if (HasNul(folder) || !host::ListFolder(folder, entries)) return names;
    const host::Kind wanted = folders ? host::Kind::Folder : host::Kind::File;
    for (host::Entry& entry : entries)
        if (entry.kind == wanted) names.push_back(std::move(entry.name));
    return names;
}

// A pattern split at its last separator: "C:\data\*.cif" -> "C:\data\" and
// "*.cif"; "C:*.cif" -> "C:" and "*.cif"; "*.cif" -> "" (the current folder).
std::pair<std::string_view, std::string_view> SplitPattern(std::string_view pattern) {
    auto cut = pattern.find_last_of("\\/");
    if (cut == std::string_view::npos) {
        const bool drive = pattern.size() >= 2 && pattern[1] == ':';
        cut = drive ? 1 : std::string_view::npos;
    }
    if (cut == std::string_view::npos) return {std::string_view(), pattern};
    return {pattern.substr(0, cut + 1), pattern.substr(cut + 1)};
}

// Everything `reader` has left, written to `out` in large pieces.
void CopyAll(FileSource& reader, OutputFile& out) {
    std::vector<char> buffer(kCopyChunk);
    while (const std::size_t got = reader.Read(buffer.data(), buffer.size()))
        out.Print(std::string_view(buffer.data(), got));
}

// The whole file at `host` written to `out`.
void CopyInto(const std::string& host, OutputFile& out) {
    FileSource reader(OpenOrRaise(host, host::OpenFor::Read));   // closes the file
    if (reader.IsFolder()) Raise(kPathFileAccess);
    CopyAll(reader, out);
}

}  // namespace

// ---- Replacement ------------------------------------------------------------

Replacement::Replacement(std::unique_ptr<PendingSink> sink) : sink_(sink.get()), file_(std::move(sink)) {}

Replacement::Replacement(Replacement&& other) noexcept
    : sink_(std::exchange(other.sink_, nullptr)), file_(std::move(other.file_)) {}

Replacement& Replacement::operator=(Replacement&& other) noexcept {
    if (this != &other) {
        Abandon();
        sink_ = std::exchange(other.sink_, nullptr);
        file_ = std::move(other.file_);
    }
    return *this;
}

Replacement::~Replacement() { Abandon(); }

void Replacement::Abandon() noexcept {
    if (sink_ == nullptr) return;
    std::exchange(sink_, nullptr)->Discard();
    file_.Close();   // drops the buffered text and the file
}

void Replacement::Commit() {
    if (sink_ == nullptr) Raise(kPathFileAccess);   // committed or given up before
    sink_ = nullptr;
    file_.Close();   // the rest written, flushed to disk, and put in place
}

// ---- FileSystem -------------------------------------------------------------

// ToWindows reads a relative host path from the process's working directory.
FileSystem::FileSystem(DriveMap drives) : drives_(std::move(drives)), currentDir_(drives_.ToWindows(".")) {}

void FileSystem::ChDir(std::string_view winPath) {
    const DriveMap::Location loc = drives_.Locate(winPath, currentDir_);
    if (!DirExists(winPath)) Raise(kPathNotFound);
    if (loc.drive == 0) {
        currentDir_ = drives_.ToWindows(HostPath(winPath));
        return;
    }
    // The drive named stays the current drive, even where another drive's
    // folder also holds the folder.
    currentDir_ = std::string{loc.drive, ':'};
    if (loc.components.empty()) currentDir_ += '\\';
    for (const auto& part : loc.components) {
        currentDir_ += '\\';
        currentDir_ += part;
    }
}

std::string FileSystem::HostPath(std::string_view winPath) const {
    const DriveMap::Location loc = drives_.Locate(winPath, currentDir_);
    std::string path = loc.root;
    std::string whole = path;
    for (const auto& part : loc.components) whole = Child(whole, part);
    host::Status st;
    // The common case costs one call: the path is there as written. A NUL
    // byte would cut the text short for the host, so such a path is left
    // alone and refused by whatever uses it.
    if (HasNul(whole) || host::GetStatus(whole, st, false)) return whole;

    for (std::size_t i = 0; i < loc.components.size(); ++i) {
        const std::string& part = loc.components[i];
        std::string exact = Child(path, part);
        if (host::GetStatus(exact, st, false)) {
            path = std::move(exact);
        } else if (const auto found = FindNoCase(path, part)) {
            path = Child(path, *found);
        } else {
            // Missing from here on: the rest keeps the case given.
            for (std::size_t j = i; j < loc.components.size(); ++j) path = Child(path, loc.components[j]);
            break;
        }
    }
    return path;
}

// The existence tests are questions, not operations: a drive that is not
// mapped holds no file and no folder.
bool FileSystem::Exists(std::string_view path) const {
    return OnMappedDrive(path) && IsFile(HostPath(path));
}

bool FileSystem::DirExists(std::string_view path) const {
    return OnMappedDrive(path) && IsFolder(HostPath(path));
}

bool FileSystem::OnMappedDrive(std::string_view path) const {
    const bool hasDrive = path.size() >= 2 && path[1] == ':' &&
                          std::isalpha(static_cast<unsigned char>(path[0]));
    return !hasDrive || drives_.Root(path[0]).has_value();
}

std::int64_t FileSystem::FileLen(std::string_view path) const {
    const std::string host = HostPath(path);
    if (HasNul(host)) Raise(kPathFileAccess);
    host::Status st;
    if (!host::GetStatus(host, st)) RaiseFor(errno, host);
    if (st.kind == host::Kind::Folder) Raise(kPathFileAccess);
    return st.size;
}

bool FileSystem::ReadOnly(std::string_view path) const {
    const std::string host = HostPath(path);
    if (HasNul(host)) Raise(kPathFileAccess);
    host::Status st;
    if (!host::GetStatus(host, st)) RaiseFor(errno, host);
    return st.readOnly;
}

void FileSystem::Kill(std::string_view path) {
    const auto [folder, name] = SplitPattern(path);
    if (HasWildcard(name)) {
        // As the classic Kill: every file the pattern names, 53 when none.
        const std::string hostFolder = HostPath(folder);
        const std::vector<std::string> names = Dir(path);
        if (names.empty()) Raise(IsFolder(hostFolder) ? kFileNotFound : kPathNotFound);
        for (const auto& each : names) {
            const std::string host = Child(hostFolder, each);
            CountFileOperation();
            if (Unlink(host) != 0) RaiseFor(errno, host);
        }
        return;
    }
    const std::string host = HostPath(path);
    if (HasNul(host)) Raise(kPathFileAccess);
    host::Status st;
    if (!host::GetStatus(host, st, false)) RaiseFor(errno, host);
    if (st.kind == host::Kind::Folder) Raise(kPathFileAccess);
    CountFileOperation();
    if (Unlink(host) != 0) RaiseFor(errno, host);
}

void FileSystem::FileCopy(std::string_view from, std::string_view to) {
    CountFileOperation();
    const std::string source = HostPath(from);
    const std::string target = HostPath(to);
    if (HasNul(source) || HasNul(target)) Raise(kPathFileAccess);
    FileSource reader(OpenOrRaise(source, host::OpenFor::Read));   // closes the file
    host::Status st;
    if (!reader.Status(st) || st.kind == host::Kind::Folder) Raise(kPathFileAccess);
    // Copying a file onto itself would empty it before reading it.
    host::Status targetSt;
    if (host::GetStatus(target, targetSt) && host::SameFile(targetSt, st)) Raise(kPathFileAccess);
    // The copy appears whole or not at all: it is written beside the target
    // and renamed over it, so an interrupted copy never leaves a part.
    Replacement copy(PendingSink::Create(target, true));
    CopyAll(reader, copy.File());
    copy.Commit();
}

void FileSystem::Name(std::string_view from, std::string_view to) {
    std::string source = HostPath(from);
    std::string target = HostPath(to);
    if (HasNul(source) || HasNul(target)) Raise(kPathFileAccess);
    host::Status st;
    if (!host::GetStatus(source, st, false)) RaiseFor(errno, source);
    host::Status targetSt;
    if (host::GetStatus(target, targetSt, false)) {
        // The target name found in another case may be the source itself: a
        // change of case only, which takes the case given.
        const bool sameName = host::kNamesIgnoreCase && LCase(target) == LCase(source);
        if (!sameName && !host::SameFile(targetSt, st)) Raise(kPathFileAccess);
        target = Child(Parent(target), SplitPattern(to).second);
        source = host::StoredCase(source);
        if (target == source) return;
    }
    CountFileOperation();
    if (Rename(source, target)) return;
    if (errno != EXDEV || st.kind == host::Kind::Folder) RaiseFor(errno, errno == ENOENT ? target : source);
    // A file moves to another file system as a copy and a delete, as the
    // classic Name moves a file to another drive.
    FileCopy(from, to);
    if (Unlink(source) != 0) RaiseFor(errno, source);
}

void FileSystem::MkDir(std::string_view path) {
    const std::string host = HostPath(path);
    if (HasNul(host)) Raise(kPathFileAccess);
    if (!MakeFolder(host)) {
        // ENOENT here is the folder above that is missing.
        Raise(errno == ENOENT || errno == ENOTDIR ? kPathNotFound : kPathFileAccess);
    }
}

void FileSystem::MkDirs(std::string_view path) {
    const std::string host = HostPath(path);
    if (HasNul(host)) Raise(kPathFileAccess);
    std::size_t next = 1;
    while (next <= host.size()) {
        auto end = host.find('/', next);
        if (end == std::string::npos) end = host.size();
        const std::string prefix = host.substr(0, end);
        next = end + 1;
        if (IsFolder(prefix)) continue;
        if (!MakeFolder(prefix) && !(errno == EEXIST && IsFolder(prefix))) {
            Raise(kPathFileAccess);   // a file in the way, or no permission
        }
    }
}

std::vector<std::string> FileSystem::Dir(std::string_view pattern) const {
    const auto [folder, name] = SplitPattern(pattern);
    const std::string hostFolder = HostPath(folder);
    std::vector<std::string> names;
    if (HasNul(hostFolder) || HasNul(name)) return names;
    if (!HasWildcard(name) && !name.empty()) {
        const std::string host = HostPath(pattern);
        if (IsFile(host)) names.push_back(BaseName(host));
        return names;
    }
    // A folder alone ("C:\data\") names all its files. Hidden names (leading
    // ".") are offered only to a pattern that itself starts with ".".
    const std::string_view wanted = name.empty() ? std::string_view("*") : name;
    const bool hiddenToo = !wanted.empty() && wanted[0] == '.';
    for (auto& entry : FolderEntries(hostFolder, false)) {
        if ((hiddenToo || entry[0] != '.') && MatchName(wanted, entry)) names.push_back(std::move(entry));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> FileSystem::SubDirs(std::string_view folder) const {
    std::vector<std::string> names = FolderEntries(HostPath(folder), true);
    std::erase_if(names, [](const std::string& n) { return n[0] == '.'; });
    std::sort(names.begin(), names.end());
    return names;
}

InputFile FileSystem::OpenInput(std::string_view path) const {
    const std::string host = HostPath(path);
    if (HasNul(host)) Raise(kPathFileAccess);
    auto source = std::make_unique<FileSource>(OpenOrRaise(host, host::OpenFor::Read));
    // A folder opens for reading on POSIX but is no file.
    if (source->IsFolder()) Raise(kPathFileAccess);
    return InputFile(std::move(source));
}

OutputFile FileSystem::OpenOutput(std::string_view path) {
    // Written beside the file and put in place when closed: until then the
    // old file, if any, is what others see.
    return OutputFile(PendingSink::Create(CheckedHostPath(path), false));
}

OutputFile FileSystem::OpenAppend(std::string_view path) {
    // A copy of the file with the new text after it, put in place when
    // closed; flushed to disk first when it holds what the file held.
    const std::string host = CheckedHostPath(path);
    host::Status st;
    const bool hasContent = host::GetStatus(host, st, false) && st.size > 0;
    OutputFile file(PendingSink::Create(host, hasContent));
    if (hasContent) CopyInto(host, file);
    return file;
}

OutputFile FileSystem::AppendInPlace(std::string_view path) {
    return OutputFile(std::make_unique<FileSink>(OpenOrRaise(CheckedHostPath(path), host::OpenFor::Append)));
}

void FileSystem::ReplaceFile(std::string_view path, std::string_view content) {
    Replacement replacement = OpenReplacement(path);
    replacement.File().Print(content);
    replacement.Commit();
}

Replacement FileSystem::OpenExtension(std::string_view path) {
    const std::string host = CheckedHostPath(path);
    Replacement extension(PendingSink::Create(host, true));
    if (host::Status st; host::GetStatus(host, st, false)) CopyInto(host, extension.File());
    return extension;
}

Replacement FileSystem::OpenReplacement(std::string_view path) {
    return Replacement(PendingSink::Create(CheckedHostPath(path), true));
}

void FileSystem::Retarget(Replacement& replacement, std::string_view path) {
    if (replacement.sink_ == nullptr) Raise(kPathFileAccess);   // committed or given up before
    replacement.sink_->Retarget(CheckedHostPath(path));
}

std::string FileSystem::CheckedHostPath(std::string_view path) const {
    std::string host = HostPath(path);
    if (HasNul(host)) Raise(kPathFileAccess);
    return host;
}

}  // namespace ravelo::platform
