// Files that appear under their name only when they are complete.
//
// A file the program writes (a structure file, an index, a database subfile,
// the rewrite of an input) is written beside its target and put in place
// when it is complete, so a kill at any instant leaves the target as it was
// or whole. On Linux the file has no name at all until then (O_TMPFILE); a
// new target takes its name in one step. An existing target is replaced by a
// rename, for which the file gets a hidden name just before: only a kill
// between those two calls, or any kill on a host without unnamed files,
// leaves such a name (".NAME.ravelo-tmp-PID-N", the content complete). The
// next process that writes into that folder removes the leftovers of
// processes that are gone, and nothing else.
#pragma once

#include <memory>
#include <string>

#include "platform/host_files.hpp"
#include "runtime/sequential.hpp"

namespace ravelo::platform {

// Removes a file, with the folder listings kept current; 0 or -1 (errno).
int Unlink(const std::string& hostPath);

// The error of a write the host refused: 61 "Disk full" when it is out of
// space, else 75.
[[noreturn]] void RaiseWriteError(int error);

class PendingSink final : public ByteSink {
public:
    // The file that will replace the host file `target` (which need not
    // exist). Refused as writing the target would be: a missing folder 76;
    // a folder in the way, a read-only target or folder 75. It gets the old
    // file's permissions. `durable`: flushed to disk before it is put in
    // place, for content the user already had; a new output needs no flush,
    // since a kill of the process cannot cut it.
    static std::unique_ptr<PendingSink> Create(const std::string& target, bool durable);
    ~PendingSink() override;   // never put in place: the target stays as it was
    PendingSink(const PendingSink&) = delete;
    PendingSink& operator=(const PendingSink&) = delete;

    void Write(const char* data, std::size_t n) override;
    void Flush() override;
    // Puts the file in place, unless it was discarded; after a failed write
    // it raises that write's error again and the target stays as it was.
    void Close() override;
    // From now on writes are dropped and Close leaves the target as it was.
    void Discard() { discarded_ = true; }
    // Makes another host file of the same folder the target, refused as
    // Create refuses one (75 for another folder); the file takes its
    // permissions.
    void Retarget(const std::string& target);

private:
    PendingSink(host::Handle file, std::string temp, std::string target, bool durable);
    void Commit();
    void CloseAfterCommit();
    void Abandon() noexcept;

    host::Handle file_;
    std::string temp_;     // its hidden name; empty while it has none
    std::string target_;
    bool durable_;
    bool replaces_ = false;   // the target was there when the file was made
    bool discarded_ = false;
    int failure_ = 0;      // errno of a failed write
};

}  // namespace ravelo::platform
