// The file system calls of a POSIX host.
#include "platform/host_files.hpp"
#include "platform/host_path.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace ravelo::platform::host {
namespace {

bool HasNul(const std::string& path) { return path.find('\0') != std::string::npos; }

std::int64_t Nanoseconds(const timespec& t) {
    return static_cast<std::int64_t>(t.tv_sec) * 1000000000 + t.tv_nsec;
}

void Fill(const struct stat& st, Status& status) {
    status.kind = S_ISREG(st.st_mode) ? Kind::File : S_ISDIR(st.st_mode) ? Kind::Folder : Kind::Other;
    status.size = static_cast<std::int64_t>(st.st_size);
    status.device = static_cast<std::uint64_t>(st.st_dev);
    status.node = static_cast<std::uint64_t>(st.st_ino);
    status.modified = Nanoseconds(st.st_mtim);
    status.changed = Nanoseconds(st.st_ctim);
    // No write bit at all counts too: the super-user may write anyway, but
    // the file is still marked read-only.
    status.readOnly = (st.st_mode & 0222) == 0;
    status.permissions = static_cast<std::uint32_t>(st.st_mode & 07777);
}

// open(), repeated when a signal interrupts it.
Handle OpenRetrying(const char* path, int flags, mode_t mode = 0666) {
    int fd;
    do {
        fd = open(path, flags | O_CLOEXEC, mode);
    } while (fd < 0 && errno == EINTR);
    return fd;
}

}  // namespace

bool GetStatus(const std::string& path, Status& status, bool followLinks) {
    struct stat st {};
    if (HasNul(path)) {
        errno = EINVAL;
        return false;
    }
    if ((followLinks ? stat(path.c_str(), &st) : lstat(path.c_str(), &st)) != 0) return false;
    Fill(st, status);
    if (!status.readOnly && status.kind == Kind::File)
        status.readOnly = faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0;
    return true;
}

std::string StoredCase(const std::string& path) { return path; }

bool SameFile(const Status& a, const Status& b) { return a.device == b.device && a.node == b.node; }

Handle Open(const std::string& path, OpenFor mode) {
    if (HasNul(path)) {
        errno = EINVAL;
        return kNoHandle;
    }
    return OpenRetrying(path.c_str(), mode == OpenFor::Read ? O_RDONLY : O_WRONLY | O_CREAT | O_APPEND);
}

std::ptrdiff_t Read(Handle file, char* buffer, std::size_t size) {
    for (;;) {
        const ssize_t got = read(static_cast<int>(file), buffer, size);
        if (got >= 0 || errno != EINTR) return got;
    }
}

std::ptrdiff_t Write(Handle file, const char* data, std::size_t size) {
    for (;;) {
        const ssize_t written = write(static_cast<int>(file), data, size);
        if (written >= 0 || errno != EINTR) return written;
    }
}

bool Sync(Handle file) { return fsync(static_cast<int>(file)) == 0 || errno == EINVAL || errno == EROFS; }

bool Close(Handle file) { return close(static_cast<int>(file)) == 0 || errno == EINTR; }

bool GetStatus(Handle file, Status& status) {
    struct stat st {};
    if (fstat(static_cast<int>(file), &st) != 0) return false;
    Fill(st, status);
    return true;
}

bool RenameOver(const std::string& from, const std::string& to) { return rename(from.c_str(), to.c_str()) == 0; }

bool Remove(const std::string& path) { return unlink(path.c_str()) == 0; }

bool MakeFolder(const std::string& path) { return mkdir(path.c_str(), 0777) == 0; }

bool ListFolder(const std::string& folder, std::vector<Entry>& entries) {
    DIR* dir = HasNul(folder) ? nullptr : opendir(folder.c_str());
    if (dir == nullptr) return false;
    while (const dirent* entry = readdir(dir)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") continue;
        Kind kind = entry->d_type == DT_DIR ? Kind::Folder : entry->d_type == DT_REG ? Kind::File : Kind::Other;
        if (entry->d_type == DT_UNKNOWN || entry->d_type == DT_LNK) {
            Status status;
            if (!GetStatus(Child(folder, name), status)) continue;
            kind = status.kind;
        }
        entries.push_back({name, kind});
    }
    closedir(dir);
    return true;
}

std::string WorkingFolder() {
    std::string buf(4096, '\0');
    while (getcwd(buf.data(), buf.size()) == nullptr) {
        if (errno != ERANGE) return "/";   // the folder was removed under us
        buf.resize(buf.size() * 2);
    }
    return std::string(buf.c_str());
}

std::string HomeFolder() {
    const passwd* pw = getpwuid(getuid());
    return pw != nullptr && pw->pw_dir != nullptr ? pw->pw_dir : "/";
}

std::string DriveLetters() { return {}; }

Handle CreateUnnamed(const std::string& folder) {
    // Naming the file later goes through /proc, which any process may use
    // (linking the descriptor itself needs privileges).
    static const bool canName = access("/proc/self/fd", X_OK) == 0;
    if (!canName) {
        errno = EOPNOTSUPP;
        return kNoHandle;
    }
    const Handle fd = OpenRetrying(folder.c_str(), O_TMPFILE | O_WRONLY, 0666);
    // A file system or kernel without unnamed files says so in one of these
    // ways; anything else is a refusal of the folder.
    if (fd < 0 && (errno == EISDIR || errno == EINVAL)) errno = EOPNOTSUPP;
    return fd;
}

bool NameUnnamed(Handle file, const std::string& path) {
    char proc[48];
    std::snprintf(proc, sizeof proc, "/proc/self/fd/%d", static_cast<int>(file));
    return linkat(AT_FDCWD, proc, AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

Handle CreateNew(const std::string& path) { return OpenRetrying(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666); }

void CopyPermissions(Handle file, const Status& like) { fchmod(static_cast<int>(file), like.permissions); }

void SyncFolder(const std::string& folder) {
    const int fd = OpenRetrying(folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd < 0) return;
    fsync(fd);
    close(fd);
}

long ProcessId() { return static_cast<long>(getpid()); }

bool ProcessEnded(long id) { return kill(static_cast<pid_t>(id), 0) != 0 && errno == ESRCH; }

}  // namespace ravelo::platform::host
