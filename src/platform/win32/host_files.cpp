// The file system calls of a Windows host, through the wide-character API.
// The program's text is bytes of the ANSI code page; names are turned into
// UTF-16 here and back, and nowhere else. Host paths use "/", which the
// API takes as "\".
#include "platform/host_files.hpp"

#include <windows.h>

#include <cerrno>

#include "platform/win32/text.hpp"

namespace ravelo::platform::host {
namespace {

// errno for the last error of the API, as the shared code reads refusals.
void SetErrnoFromLastError() {
    switch (GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_INVALID_NAME: errno = ENOENT; break;
    case ERROR_DIRECTORY: errno = ENOTDIR; break;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS: errno = EEXIST; break;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL: errno = ENOSPC; break;
    case ERROR_NOT_SAME_DEVICE: errno = EXDEV; break;
    case ERROR_NOT_SUPPORTED: errno = EOPNOTSUPP; break;
    default: errno = EACCES; break;
    }
}

std::int64_t Nanoseconds(const FILETIME& t) {
    // 100-nanosecond steps.
    return static_cast<std::int64_t>((static_cast<std::uint64_t>(t.dwHighDateTime) << 32) | t.dwLowDateTime) * 100;
}

void Fill(DWORD attributes, std::uint64_t size, const FILETIME& written, Status& status) {
    const bool folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    status.kind = folder ? Kind::Folder : (attributes & FILE_ATTRIBUTE_DEVICE) != 0 ? Kind::Other : Kind::File;
    status.size = static_cast<std::int64_t>(size);
    status.readOnly = !folder && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    status.permissions = attributes;
    status.modified = Nanoseconds(written);
    status.changed = status.modified;
}

HANDLE AsHandle(Handle file) { return reinterpret_cast<HANDLE>(file); }

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

Handle OpenHandle(const std::string& path, DWORD access, DWORD disposition, DWORD flags = FILE_ATTRIBUTE_NORMAL) {
    const HANDLE file =
        CreateFileW(Wide(path, true).c_str(), access, kShareAll, nullptr, disposition, flags, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        SetErrnoFromLastError();
        return kNoHandle;
    }
    return reinterpret_cast<Handle>(file);
}

}  // namespace

bool GetStatus(const std::string& path, Status& status, bool) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(Wide(path, true).c_str(), GetFileExInfoStandard, &data)) {
        SetErrnoFromLastError();
        return false;
    }
    Fill(data.dwFileAttributes, (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow,
         data.ftLastWriteTime, status);
    // Which file it is: opened without access, only to ask.
    const HANDLE file = CreateFileW(Wide(path, true).c_str(), 0, kShareAll, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        BY_HANDLE_FILE_INFORMATION info{};
        if (GetFileInformationByHandle(file, &info)) {
            status.device = info.dwVolumeSerialNumber;
            status.node = (static_cast<std::uint64_t>(info.nFileIndexHigh) << 32) | info.nFileIndexLow;
        }
        CloseHandle(file);
    }
    return true;
}

std::string StoredCase(const std::string& path) {
    // The folder's own list: a search for the name itself may answer with
    // the name as asked.
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return path;
    const std::wstring wanted = Wide(path.substr(slash + 1));
    std::vector<Entry> entries;
    if (!ListFolder(path.substr(0, slash == 2 ? 3 : slash), entries)) return path;
    for (const Entry& entry : entries) {
        const std::wstring name = Wide(entry.name);
        if (CompareStringOrdinal(name.c_str(), -1, wanted.c_str(), -1, TRUE) == CSTR_EQUAL)
            return path.substr(0, slash + 1) + entry.name;
    }
    return path;
}

bool SameFile(const Status& a, const Status& b) {
    // Wine and some file systems give no file index: then only the same
    // name would be the same file, which the callers check themselves.
    return a.node != 0 && a.device == b.device && a.node == b.node;
}

Handle Open(const std::string& path, OpenFor mode) {
    if (mode == OpenFor::Read) return OpenHandle(path, GENERIC_READ, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    return OpenHandle(path, FILE_APPEND_DATA, OPEN_ALWAYS);
}

std::ptrdiff_t Read(Handle file, char* buffer, std::size_t size) {
    DWORD got = 0;
    const DWORD wanted = size > 0x40000000 ? 0x40000000 : static_cast<DWORD>(size);
    if (!ReadFile(AsHandle(file), buffer, wanted, &got, nullptr)) {
        if (GetLastError() == ERROR_BROKEN_PIPE || GetLastError() == ERROR_HANDLE_EOF) return 0;
        SetErrnoFromLastError();
        return -1;
    }
    return static_cast<std::ptrdiff_t>(got);
}

std::ptrdiff_t Write(Handle file, const char* data, std::size_t size) {
    DWORD written = 0;
    const DWORD wanted = size > 0x40000000 ? 0x40000000 : static_cast<DWORD>(size);
    if (!WriteFile(AsHandle(file), data, wanted, &written, nullptr) || (written == 0 && wanted > 0)) {
        SetErrnoFromLastError();
        return -1;
    }
    return static_cast<std::ptrdiff_t>(written);
}

bool Sync(Handle file) {
    if (FlushFileBuffers(AsHandle(file))) return true;
    // Consoles and pipes cannot be flushed and need nothing.
    const DWORD error = GetLastError();
    return error == ERROR_INVALID_HANDLE || error == ERROR_INVALID_FUNCTION;
}

bool Close(Handle file) { return CloseHandle(AsHandle(file)) != 0; }

bool GetStatus(Handle file, Status& status) {
    BY_HANDLE_FILE_INFORMATION info{};
    if (!GetFileInformationByHandle(AsHandle(file), &info)) {
        SetErrnoFromLastError();
        return false;
    }
    Fill(info.dwFileAttributes, (static_cast<std::uint64_t>(info.nFileSizeHigh) << 32) | info.nFileSizeLow,
         info.ftLastWriteTime, status);
    status.device = info.dwVolumeSerialNumber;
    status.node = (static_cast<std::uint64_t>(info.nFileIndexHigh) << 32) | info.nFileIndexLow;
    return true;
}

bool RenameOver(const std::string& from, const std::string& to) {
    const std::wstring source = Wide(from, true), target = Wide(to, true);
    constexpr DWORD kFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    // A new case for the same name: some file systems (and wine) report
    // success for it and change nothing, so it goes through another name.
    if (source != target && CompareStringOrdinal(source.c_str(), -1, target.c_str(), -1, TRUE) == CSTR_EQUAL) {
        const std::wstring step = source + L".ravelo-case-" + std::to_wstring(GetCurrentProcessId());
        if (MoveFileExW(source.c_str(), step.c_str(), kFlags)) {
            if (MoveFileExW(step.c_str(), target.c_str(), kFlags)) return true;
            MoveFileExW(step.c_str(), source.c_str(), kFlags);
        }
    } else if (MoveFileExW(source.c_str(), target.c_str(), kFlags)) {
        return true;
    }
    SetErrnoFromLastError();
    return false;
}

bool Remove(const std::string& path) {
    if (DeleteFileW(Wide(path, true).c_str())) return true;
    SetErrnoFromLastError();
    return false;
}

bool MakeFolder(const std::string& path) {
    if (CreateDirectoryW(Wide(path, true).c_str(), nullptr)) return true;
    SetErrnoFromLastError();
    return false;
}

bool ListFolder(const std::string& folder, std::vector<Entry>& entries) {
    WIN32_FIND_DATAW found{};
    const std::string pattern = folder.ends_with("/") ? folder + "*" : folder + "/*";
    const HANDLE search = FindFirstFileExW(Wide(pattern, true).c_str(), FindExInfoBasic, &found,
                                           FindExSearchNameMatch, nullptr, 0);
    if (search == INVALID_HANDLE_VALUE) {
        SetErrnoFromLastError();
        return GetLastError() == ERROR_FILE_NOT_FOUND;   // an empty folder
    }
    do {
        const std::string name = Narrow(found.cFileName);
        if (name == "." || name == "..") continue;
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        entries.push_back({name, isFolder ? Kind::Folder : Kind::File});
    } while (FindNextFileW(search, &found));
    FindClose(search);
    return true;
}

std::string WorkingFolder() {
    const DWORD size = GetCurrentDirectoryW(0, nullptr);
    std::wstring folder(size, L'\0');
    folder.resize(GetCurrentDirectoryW(size, folder.data()));
    return HostForm(Narrow(folder));
}

std::string HomeFolder() {
    wchar_t buffer[MAX_PATH];
    const DWORD size = GetEnvironmentVariableW(L"USERPROFILE", buffer, MAX_PATH);
    return size > 0 && size < MAX_PATH ? HostForm(Narrow(std::wstring(buffer, size))) : "C:/";
}

std::string DriveLetters() {
    std::string letters;
    const DWORD drives = GetLogicalDrives();
    for (int i = 0; i < 26; ++i)
        if ((drives & (1u << i)) != 0) letters += static_cast<char>('A' + i);
    return letters;
}

Handle CreateUnnamed(const std::string&) {
    // Windows has no unnamed files: pending files get their hidden name at once.
    errno = EOPNOTSUPP;
    return kNoHandle;
}

bool NameUnnamed(Handle, const std::string&) {
    errno = EOPNOTSUPP;
    return false;
}

Handle CreateNew(const std::string& path) {
    return OpenHandle(path, GENERIC_WRITE, CREATE_NEW, FILE_ATTRIBUTE_NORMAL);
}

void CopyPermissions(Handle, const Status&) {
    // A replacement takes the target's attributes with its name; nothing to copy.
}

void SyncFolder(const std::string&) {
    // MOVEFILE_WRITE_THROUGH has already made the rename durable.
}

long ProcessId() { return static_cast<long>(GetCurrentProcessId()); }

bool ProcessEnded(long id) {
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(id));
    if (process == nullptr) return GetLastError() == ERROR_INVALID_PARAMETER;   // no such process
    const bool ended = WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
    CloseHandle(process);
    return ended;
}

}  // namespace ravelo::platform::host
