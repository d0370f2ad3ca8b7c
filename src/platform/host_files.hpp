// The calls of the host's file system that the file services are built on,
// one implementation per host (platform/posix, platform/win32). Paths are
// host paths with "/" separators; a refusal returns false (or kNoHandle)
// and leaves the reason in errno, as POSIX names it (ENOENT, ENOTDIR,
// EEXIST, ENOSPC, EACCES, ...), so that what the services make of a refusal
// is written once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ravelo::platform::host {

enum class Kind { File, Folder, Other };

struct Status {
    Kind kind = Kind::Other;
    std::int64_t size = 0;
    bool readOnly = false;   // marked read-only, or not writable by this process
    std::uint32_t permissions = 0;   // the host's permission bits, where it has them
    // Which file it is: two names with the same identity are one file.
    std::uint64_t device = 0, node = 0;
    // When its content and its status last changed (nanoseconds; a folder's
    // change when an entry comes or goes).
    std::int64_t modified = 0, changed = 0;
};

// Whether the host's names ignore case (Windows), so that one file answers
// to a name in any case.
#ifdef _WIN32
inline constexpr bool kNamesIgnoreCase = true;
#else
inline constexpr bool kNamesIgnoreCase = false;
#endif

// A path with its last component in the case the folder holds it (on a host
// whose names ignore case; elsewhere the path as it stands).
std::string StoredCase(const std::string& path);

// The status of the file a path names; `followLinks` false looks at a link
// itself.
bool GetStatus(const std::string& path, Status& status, bool followLinks = true);
bool SameFile(const Status& a, const Status& b);

// An open file: a descriptor on POSIX, a handle on Windows.
using Handle = std::intptr_t;
inline constexpr Handle kNoHandle = -1;

enum class OpenFor {
    Read,     // an existing file
    Append,   // created when missing, every write at its end
};
Handle Open(const std::string& path, OpenFor mode);
// Bytes read (0 at the end), or -1.
std::ptrdiff_t Read(Handle file, char* buffer, std::size_t size);
// Bytes written (at least one), or -1.
std::ptrdiff_t Write(Handle file, const char* data, std::size_t size);
// Flushes the file to disk; a file that cannot be flushed (a pipe, a
// terminal) needs nothing and counts as flushed.
bool Sync(Handle file);
bool Close(Handle file);
bool GetStatus(Handle file, Status& status);

// A rename that replaces an existing target.
bool RenameOver(const std::string& from, const std::string& to);
bool Remove(const std::string& path);
bool MakeFolder(const std::string& path);

struct Entry {
    std::string name;
    Kind kind;   // links count as what they point to
};
// The entries of a folder, "." and ".." left out; false when it cannot be read.
bool ListFolder(const std::string& folder, std::vector<Entry>& entries);

// The process's working folder, and the user's home folder as the account
// database gives it.
std::string WorkingFolder();
std::string HomeFolder();
// The letters of the host's own drives ("CDZ"; none on POSIX).
std::string DriveLetters();

// ---- What whole-file replacement needs ----

// A new file in `folder` that has no name yet (so a kill leaves nothing);
// kNoHandle with EOPNOTSUPP (or the host's refusal) where the file system
// cannot make one.
Handle CreateUnnamed(const std::string& folder);
// Gives an unnamed file the name `path`; refused with EEXIST when taken.
bool NameUnnamed(Handle file, const std::string& path);
// A new file at `path`, refused with EEXIST when the name is taken.
Handle CreateNew(const std::string& path);
// Gives `file` the permissions of `like` (best effort).
void CopyPermissions(Handle file, const Status& like);
// Makes a folder's entries durable (best effort).
void SyncFolder(const std::string& folder);
// This process's id, and whether the process `id` has ended.
long ProcessId();
bool ProcessEnded(long id);

}  // namespace ravelo::platform::host
