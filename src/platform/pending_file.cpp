#include "platform/pending_file.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
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
    struct stat st {};
    return stat(hostPath.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}


// Makes a change of `folder`'s entries durable. Some file systems cannot sync
// a folder; the change itself has happened by then, so failures are ignored.
void SyncFolder(const std::string& folder) {
    const int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    fsync(fd);
    close(fd);
}


// A fresh hidden name beside the target. The process id and a counter keep
// two files apart; the target's name is cut so that the whole name stays
// within the host's limit.
std::string TempNameFor(const std::string& target) {
    static std::atomic<unsigned> counter{0};
    return Child(Parent(target), "." + BaseName(target).substr(0, 160) + std::string(kTempMark) +
                                     std::to_string(getpid()) + "-" + std::to_string(counter++));
}

// The process id in a name this program gives its pending files, 0 when the
// name is not one of them.
pid_t PendingFileOwner(std::string_view name) {
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
    return static_cast<pid_t>(pid);
}

// Removes from `folder`, once per process, the pending files that killed
// processes of this program left there. A file whose process still runs (or
// whose number another process has taken since) stays.
void SweepLeftovers(const std::string& folder) {
    static std::set<std::string> swept;
    if (!swept.insert(folder).second) return;
    DIR* dir = opendir(folder.c_str());
    if (dir == nullptr) return;
    std::vector<std::string> gone;
    while (const dirent* entry = readdir(dir)) {
        const pid_t owner = PendingFileOwner(entry->d_name);
        if (owner <= 0 || owner == getpid()) continue;
        if (kill(owner, 0) != 0 && errno == ESRCH) gone.push_back(Child(folder, entry->d_name));
    }
    closedir(dir);
    for (const std::string& path : gone) {
        struct stat st {};
        if (lstat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode)) Unlink(path);
    }
}

// Whether an unnamed file can be given a name later: through /proc, which
// any process may use (linking the descriptor itself needs privileges).
bool CanNameUnnamedFiles() {
    static const bool can = access("/proc/self/fd", X_OK) == 0;
    return can;
}

// Gives the unnamed file that `proc` (its /proc/self/fd entry) names the
// name `path`; fails with EEXIST when that name is taken. The caller keeps
// the folder listings up to date.
bool Link(const char* proc, const std::string& path) {
    return linkat(AT_FDCWD, proc, AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

// Opens a new file in `folder`: unnamed where the host allows it (the second
// of the pair empty), else under a fresh hidden name.
std::pair<int, std::string> OpenBeside(const std::string& target) {
    const std::string folder = Parent(target);
    if (CanNameUnnamedFiles()) {
        int fd;
        do {
            fd = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
        } while (fd < 0 && errno == EINTR);
        if (fd >= 0) return {fd, std::string()};
        // A file system or kernel without unnamed files says so in one of
        // these ways; anything else is a refusal of the folder.
        if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) Raise(kPathFileAccess);
    }
    for (;;) {
        std::string temp = TempNameFor(target);
        ListingsUpdate update(std::string(), temp);
        const int fd = open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        update.Done(fd >= 0);
        if (fd >= 0) return {fd, std::move(temp)};
        if (errno != EEXIST && errno != EINTR) Raise(kPathFileAccess);
    }
}

// Refuses a target that cannot be written: a missing folder 76; a NUL byte,
// a folder in the way, or a read-only file 75. Gives the mode bits of the
// file that is there, if any.
std::optional<mode_t> CheckTarget(const std::string& target) {
    if (target.find('\0') != std::string::npos) Raise(kPathFileAccess);
    if (!IsFolder(Parent(target))) Raise(kPathNotFound);
    struct stat st {};
    if (stat(target.c_str(), &st) != 0) return std::nullopt;
    if (S_ISDIR(st.st_mode) || faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) Raise(kPathFileAccess);
    return st.st_mode & 07777;
}

}  // namespace

bool SyncFd(int fd) { return fsync(fd) == 0 || errno == EINVAL || errno == EROFS; }

int Unlink(const std::string& hostPath) {
    ListingsUpdate update(hostPath, std::string());
    const int result = unlink(hostPath.c_str());
    update.Done(result == 0);
    return result;
}

void RaiseWriteError(int error) {
    Raise(error == ENOSPC || error == EDQUOT ? kDiskFull : kPathFileAccess);
}

std::unique_ptr<PendingSink> PendingSink::Create(const std::string& target, bool durable) {
    const std::optional<mode_t> mode = CheckTarget(target);
    SweepLeftovers(Parent(target));
    faults::CountFileOperation();
    auto [fd, temp] = OpenBeside(target);
    if (mode) fchmod(fd, *mode);   // best effort, as a copy would
    auto sink = std::unique_ptr<PendingSink>(new PendingSink(fd, std::move(temp), target, durable));
    sink->replaces_ = mode.has_value();
    return sink;
}

void PendingSink::Retarget(const std::string& target) {
    if (Parent(target) != Parent(target_)) Raise(kPathFileAccess);
    const std::optional<mode_t> mode = CheckTarget(target);
    if (mode && fd_ >= 0) fchmod(fd_, *mode);
    target_ = target;
    replaces_ = mode.has_value();
}

PendingSink::PendingSink(int fd, std::string temp, std::string target, bool durable)
    : fd_(fd), temp_(std::move(temp)), target_(std::move(target)), durable_(durable) {}

PendingSink::~PendingSink() { Abandon(); }

void PendingSink::Abandon() noexcept {
    if (fd_ >= 0) close(fd_);
    fd_ = -1;
    if (!temp_.empty()) Unlink(temp_);
    temp_.clear();
}

void PendingSink::Write(const char* data, std::size_t n) {
    if (discarded_) return;
    if (failure_ != 0 || fd_ < 0) RaiseWriteError(failure_);
    if (!faults::WriteAll(fd_, data, n)) {
        failure_ = errno;
        RaiseWriteError(failure_);
    }
}

void PendingSink::Flush() {
    if (discarded_ || fd_ < 0) return;
    if (failure_ == 0 && !SyncFd(fd_)) failure_ = errno;
    if (failure_ != 0) RaiseWriteError(failure_);
}

void PendingSink::Close() {
    if (discarded_ || fd_ < 0) return;
    if (failure_ != 0) RaiseWriteError(failure_);
    Commit();
}

void PendingSink::Commit() {
    if (durable_ && !SyncFd(fd_)) {
        failure_ = errno;
        RaiseWriteError(failure_);
    }
    faults::CountFileOperation();
    ListingsUpdate update(temp_, target_);
    if (temp_.empty()) {
        char proc[48];
        std::snprintf(proc, sizeof proc, "/proc/self/fd/%d", fd_);
        // A target that is not there takes the file's name at once, with no
        // moment at which a kill could leave a second name behind.
        if (!replaces_ && Link(proc, target_)) {
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
            if (Link(proc, temp)) {
                temp_ = std::move(temp);
                break;
            }
            if (errno != EEXIST) {
                update.Done(false);
                RaiseWriteError(errno);
            }
        }
    }
    const bool renamed = rename(temp_.c_str(), target_.c_str()) == 0;
    update.Done(renamed);
    if (!renamed) Raise(kPathFileAccess);   // the destructor removes the file
    temp_.clear();
    CloseAfterCommit();
}

void PendingSink::CloseAfterCommit() {
    // close() interrupted has still closed the file; its other failures are
    // write errors reported late.
    const bool closed = close(std::exchange(fd_, -1)) == 0 || errno == EINTR;
    if (durable_) SyncFolder(Parent(target_));
    if (!closed) {
        failure_ = errno;
        RaiseWriteError(failure_);
    }
}

}  // namespace ravelo::platform
