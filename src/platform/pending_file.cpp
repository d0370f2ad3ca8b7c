#include "platform/pending_file.hpp"

#include <atomic>
#include <cerrno>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "platform/fault_injection.hpp"
#include "platform/folder_listings.hpp"
#include "platform/host_path.hpp"
#include "runtime/error.hpp"

namespace ravelo::platform {
namespace {

constexpr std::string_view kTempMark = ".ravelo-tmp-";

bool IsFolder(const std::string& hostPath) {
    host::Status status;
    return host::GetStatus(hostPath, status) && status.kind == host::Kind::Folder;
}

// A fresh hidden name beside the target. The process id and a counter keep
// two files apart; the target's name is cut so that the whole name stays
// within the host's limit.
std::string TempNameFor(const std::string& target) {
    static std::atomic<unsigned> counter{0};
    return Child(Parent(target), "." + BaseName(target).substr(0, 160) + std::string(kTempMark) +
                                     std::to_string(host::ProcessId()) + "-" + std::to_string(counter++));
}

// The process id in a name this program gives its pending files, 0 when the
// name is not one of them.
long PendingFileOwner(std::string_view name) {
    const auto mark = name.rfind(kTempMark);
    if (name.empty() || name[0] != '.' || mark == std::string_view::npos || mark == 0) return 0;
    std::string_view rest = name.substr(mark + kTempMark.size());
    const auto dash = rest.find('-');
    if (dash == 0 || dash == std::string_view::npos || dash + 1 == rest.size()) return 0;
    long long pid = 0;
    for (std::size_t i = 0; i < rest.size(); ++i) {
        const char c = rest[i];
        if (i == dash) continue;
        if (c < '0' || c > '9') return 0;
        if (i < dash && (pid = pid * 10 + (c - '0')) > 0x7fffffff) return 0;
    }
    return static_cast<long>(pid);
}

// Removes from `folder`, once per process, the pending files that killed
// processes of this program left there. A file whose process still runs (or
// whose number another process has taken since) stays.
void SweepLeftovers(const std::string& folder) {
    static std::set<std::string> swept;
    if (!swept.insert(folder).second) return;
    std::vector<host::Entry> entries;
    if (!host::ListFolder(folder, entries)) return;
    for (const host::Entry& entry : entries) {
        const long owner = PendingFileOwner(entry.name);
        if (owner <= 0 || owner == host::ProcessId() || !host::ProcessEnded(owner)) continue;
        const std::string path = Child(folder, entry.name);
        host::Status status;
        if (host::GetStatus(path, status, false) && status.kind == host::Kind::File) Unlink(path);
    }
}

// Opens a new file beside `target`: unnamed where the host allows it (the
// second of the pair empty), else under a fresh hidden name.
std::pair<host::Handle, std::string> OpenBeside(const std::string& target) {
    const host::Handle unnamed = host::CreateUnnamed(Parent(target));
    if (unnamed != host::kNoHandle) return {unnamed, std::string()};
    if (errno != EOPNOTSUPP) Raise(kPathFileAccess);
    for (;;) {
        std::string temp = TempNameFor(target);
        ListingsUpdate update(std::string(), temp);
        const host::Handle file = host::CreateNew(temp);
        update.Done(file != host::kNoHandle);
        if (file != host::kNoHandle) return {file, std::move(temp)};
        if (errno != EEXIST && errno != EINTR) Raise(kPathFileAccess);
    }
}

// Refuses a target that cannot be written: a missing folder 76; a NUL byte,
// a folder in the way, or a read-only file 75. Gives the status of the file
// that is there, if any.
std::optional<host::Status> CheckTarget(const std::string& target) {
    if (target.find('\0') != std::string::npos) Raise(kPathFileAccess);
    if (!IsFolder(Parent(target))) Raise(kPathNotFound);
    host::Status status;
    if (!host::GetStatus(target, status)) return std::nullopt;
    if (status.kind == host::Kind::Folder || status.readOnly) Raise(kPathFileAccess);
    return status;
}

}  // namespace

int Unlink(const std::string& hostPath) {
    ListingsUpdate update(hostPath, std::string());
    const bool removed = host::Remove(hostPath);
    update.Done(removed);
    return removed ? 0 : -1;
}

void RaiseWriteError(int error) {
#ifdef EDQUOT
    if (error == EDQUOT) Raise(kDiskFull);
#endif
    Raise(error == ENOSPC ? kDiskFull : kPathFileAccess);
}

std::unique_ptr<PendingSink> PendingSink::Create(const std::string& target, bool durable) {
    const std::optional<host::Status> existing = CheckTarget(target);
    SweepLeftovers(Parent(target));
    faults::CountFileOperation();
    auto [file, temp] = OpenBeside(target);
    if (existing) host::CopyPermissions(file, *existing);   // best effort, as a copy would
    auto sink = std::unique_ptr<PendingSink>(new PendingSink(file, std::move(temp), target, durable));
    sink->replaces_ = existing.has_value();
    return sink;
}

void PendingSink::Retarget(const std::string& target) {
    if (Parent(target) != Parent(target_)) Raise(kPathFileAccess);
    const std::optional<host::Status> existing = CheckTarget(target);
    if (existing && file_ != host::kNoHandle) host::CopyPermissions(file_, *existing);
    target_ = target;
    replaces_ = existing.has_value();
}

PendingSink::PendingSink(host::Handle file, std::string temp, std::string target, bool durable)
    : file_(file), temp_(std::move(temp)), target_(std::move(target)), durable_(durable) {}

PendingSink::~PendingSink() { Abandon(); }

void PendingSink::Abandon() noexcept {
    if (file_ != host::kNoHandle) host::Close(file_);
    file_ = host::kNoHandle;
    if (!temp_.empty()) Unlink(temp_);
    temp_.clear();
}

void PendingSink::Write(const char* data, std::size_t n) {
    if (discarded_) return;
    if (failure_ != 0 || file_ == host::kNoHandle) RaiseWriteError(failure_);
    if (!faults::WriteAll(file_, data, n)) {
        failure_ = errno;
        RaiseWriteError(failure_);
    }
}

void PendingSink::Flush() {
    if (discarded_ || file_ == host::kNoHandle) return;
    if (failure_ == 0 && !host::Sync(file_)) failure_ = errno;
    if (failure_ != 0) RaiseWriteError(failure_);
}

void PendingSink::Close() {
    if (discarded_ || file_ == host::kNoHandle) return;
    if (failure_ != 0) RaiseWriteError(failure_);
    Commit();
}

void PendingSink::Commit() {
    if (durable_ && !host::Sync(file_)) {
        failure_ = errno;
        RaiseWriteError(failure_);
    }
    faults::CountFileOperation();
    ListingsUpdate update(temp_, target_);
    if (temp_.empty()) {
        // A target that is not there takes the file's name at once, with no
        // moment at which a kill could leave a second name behind.
        if (!replaces_ && host::NameUnnamed(file_, target_)) {
            update.Done(true);
            CloseAfterCommit();
            return;
        }
        // An existing target is replaced by a rename, which needs a name to
        // rename from: the file gets one right before it, so that only a
        // kill between these two calls can leave it (for the next run to
        // remove).
        if (!replaces_ && errno != EEXIST) {
            update.Done(false);
            RaiseWriteError(errno);
        }
        for (;;) {
            std::string temp = TempNameFor(target_);
            if (host::NameUnnamed(file_, temp)) {
                temp_ = std::move(temp);
                break;
            }
            if (errno != EEXIST) {
                update.Done(false);
                RaiseWriteError(errno);
            }
        }
    }
    const bool renamed = host::RenameOver(temp_, target_);
    update.Done(renamed);
    if (!renamed) Raise(kPathFileAccess);   // the destructor removes the file
    temp_.clear();
    CloseAfterCommit();
}

void PendingSink::CloseAfterCommit() {
    // close() interrupted has still closed the file; its other failures are
    // write errors reported late.
    const bool closed = host::Close(std::exchange(file_, host::kNoHandle));
    if (durable_) host::SyncFolder(Parent(target_));
    if (!closed) {
        failure_ = errno;
        RaiseWriteError(failure_);
    }
}

}  // namespace ravelo::platform
