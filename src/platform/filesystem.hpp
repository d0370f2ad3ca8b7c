// The file services of the program over Windows-form paths: existence, length
// and attributes, delete, copy, rename, directory search with wildcards,
// folders, and sequential files. Names are looked up case-insensitively, as
// on Windows; new files get the case given. Refusals of the host become the
// classic errors: a missing file 53, a missing folder 76, anything else
// (permission, a folder in the way, a NUL byte, a full disk) 75.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/paths.hpp"
#include "platform/pending_file.hpp"
#include "runtime/sequential.hpp"

namespace ravelo::platform {

// A file being replaced piece by piece, for contents too large to hold in
// memory: the new content goes through File() into a file beside the target,
// and Commit() makes it durable and puts it in place of the target. Dropped
// without Commit, the new file is removed and the target stays as it was.
class Replacement {
public:
    explicit Replacement(std::unique_ptr<PendingSink> sink);
    Replacement(Replacement&& other) noexcept;
    Replacement& operator=(Replacement&& other) noexcept;
    ~Replacement();

    OutputFile& File() { return file_; }
    // True until committed or given up.
    bool Pending() const { return sink_ != nullptr; }
    // Failures (a full disk 61, a refused rename 75) leave the target
    // unchanged.
    void Commit();

private:
    friend class FileSystem;
    void Abandon() noexcept;

    PendingSink* sink_;   // owned by file_ until committed or given up
    OutputFile file_;
};

// Runs `write` on the replacement's file; when it ends in an error, commits
// what was written (and passes the error on). Committing or dropping the
// replacement after a normal end is `write`'s own choice.
template <typename Write>
void WriteAndCommitOnError(Replacement& replacement, Write&& write) {
    try {
        write(replacement.File());
    } catch (...) {
        if (replacement.Pending()) replacement.Commit();
        throw;
    }
}

// Runs `write` on the replacement's file, then commits it, also when `write`
// ends in an error (which is then passed on): as with a file appended to in
// place, what was written before the error stays.
template <typename Write>
void WriteAndCommit(Replacement& replacement, Write&& write) {
    WriteAndCommitOnError(replacement, std::forward<Write>(write));
    replacement.Commit();
}

class FileSystem {
public:
    explicit FileSystem(DriveMap drives);

    const DriveMap& Drives() const { return drives_; }

    // The current directory, Windows form ("Z:\home\user"); starts as the
    // process's working directory.
    std::string CurDir() const { return currentDir_; }
    // Changes the current directory (and drive); a missing folder raises 76.
    void ChDir(std::string_view winPath);

    // The host path of a Windows-form path: each existing component found
    // case-insensitively, missing components kept as given.
    std::string HostPath(std::string_view winPath) const;

    bool Exists(std::string_view path) const;       // a file (not a folder)
    bool DirExists(std::string_view path) const;
    // Length in bytes; a missing file raises 53.
    std::int64_t FileLen(std::string_view path) const;
    // The read-only attribute (bit 0 of the classic attributes).
    bool ReadOnly(std::string_view path) const;

    void Kill(std::string_view path);                // 53 when missing
    // Copies a file; the target appears whole or not at all (written beside
    // it, then renamed over it).
    void FileCopy(std::string_view from, std::string_view to);
    void Name(std::string_view from, std::string_view to);   // rename
    void MkDir(std::string_view path);
    // Creates every missing folder of the path.
    void MkDirs(std::string_view path);

    // Names (not paths) of the files that a pattern names: the folder part of
    // the pattern, then a name with "*" and "?" matched case-insensitively.
    // Sorted in plain byte order. A pattern without wildcards names at most
    // its own file. A missing folder gives no names.
    std::vector<std::string> Dir(std::string_view pattern) const;
    // Sub-folder names of a folder, sorted, "." and ".." left out.
    std::vector<std::string> SubDirs(std::string_view folder) const;

    InputFile OpenInput(std::string_view path) const;   // 53 when missing
    // A file written anew, or the file with more text after it (created when
    // missing). Either appears under its name only when closed (also by an
    // error that ends the program), whole: until then the file stays as it
    // was, and a kill leaves it so. A write the host refuses raises 61 (a
    // full disk) or 75, and the file then stays as it was.
    OutputFile OpenOutput(std::string_view path);
    OutputFile OpenAppend(std::string_view path);
    // Appends straight to the file (created when missing), for small logs
    // that take one line a call: a replacement per line would cost a new
    // file each time, and a kill can at worst cut the last line short.
    OutputFile AppendInPlace(std::string_view path);

    // Replaces the file at `path` with `content` so that a kill at any instant
    // leaves the old file or the new one whole: written to a temporary file in
    // the same folder, flushed, then renamed over the target.
    void ReplaceFile(std::string_view path, std::string_view content);
    // The same in steps: write through the result's File(), then Commit().
    Replacement OpenReplacement(std::string_view path);
    // An append that a kill cannot leave half done: the result's File()
    // already holds the file's content (none when it is missing), what is
    // written goes after it, and Commit() puts the whole in place.
    Replacement OpenExtension(std::string_view path);
    // Makes `path`, a file in the same folder, the target of a replacement
    // not yet committed: refused (and the replacement left as it was) as
    // opening it would be, and 75 for another folder.
    void Retarget(Replacement& replacement, std::string_view path);

private:
    bool OnMappedDrive(std::string_view path) const;
    // HostPath, refusing a path with a NUL byte (75).
    std::string CheckedHostPath(std::string_view path) const;

    DriveMap drives_;
    std::string currentDir_;
};

}  // namespace ravelo::platform
