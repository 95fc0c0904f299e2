#include "core/common/safe_file.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace rk4 {

namespace fs = std::filesystem;

namespace {

constexpr char kTemporaryMark[] = ".tmp~";
constexpr int kMostLinkHops = 40;

std::string kindOf(mode_t mode)
{
    if (S_ISDIR(mode))
        return "a folder";
    if (S_ISCHR(mode) || S_ISBLK(mode))
        return "a device";
    if (S_ISFIFO(mode))
        return "a FIFO";
    if (S_ISSOCK(mode))
        return "a socket";
    return "not a plain file";
}

fs::path folderOf(const fs::path& path)
{
    const fs::path parent = path.parent_path();
    return parent.empty() ? fs::path(".") : parent;
}

// The permission bits a new file gets from this process's umask.
mode_t newFileMode()
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("Umask:", 0) == 0)
            return static_cast<mode_t>(0666 & ~std::strtoul(line.c_str() + 6, nullptr, 8));
    }
    return 0644;
}

bool processIsGone(long pid)
{
    if (pid <= 0 || pid == static_cast<long>(::getpid()))
        return false;
    return ::kill(static_cast<pid_t>(pid), 0) == -1 && errno == ESRCH;
}

// The process id at the end of "<name>[.XXXXXX].tmp~<pid>", or 0 when `entry`
// is not a temporary of `name`.
long temporaryOwner(const std::string& entry, const std::string& name)
{
    if (entry.size() <= name.size() + 1 || entry.compare(0, name.size(), name) != 0 || entry[name.size()] != '.')
        return 0;
    const std::size_t mark = entry.rfind(kTemporaryMark);
    if (mark == std::string::npos || mark < name.size())
        return 0;
    const std::string digits = entry.substr(mark + std::strlen(kTemporaryMark));
    if (digits.empty() || digits.size() > 9 || digits.find_first_not_of("0123456789") != std::string::npos)
        return 0;
    return std::stol(digits);
}

bool writeAll(int fd, const std::uint8_t* data, std::size_t size, int& error)
{
    while (size > 0) {
        const ssize_t done = ::write(fd, data, size);
        if (done < 0) {
            if (errno == EINTR)
                continue;
            error = errno;
            return false;
        }
        data += done;
        size -= static_cast<std::size_t>(done);
    }
    return true;
}

void syncFolder(const fs::path& folder)
{
    const int dirFd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dirFd >= 0) {
        ::fsync(dirFd);
        ::close(dirFd);
    }
}

} // namespace

std::string SaveResult::cause() const
{
    switch (problem) {
    case SaveProblem::None: return {};
    case SaveProblem::NotRegularFile: return "not a regular file (" + kind + ")";
    case SaveProblem::DiskFull: return "disk full";
    case SaveProblem::NotWritable: return std::string("not writable: ") + std::strerror(error);
    case SaveProblem::CannotCreate:
    case SaveProblem::WriteFailed: return error == ENOSPC ? "disk full" : std::strerror(error);
    }
    return {};
}

fs::path saveTargetOf(const fs::path& target)
{
    fs::path path = target;
    for (int hop = 0; hop < kMostLinkHops; ++hop) {
        std::error_code error;
        if (!fs::is_symlink(fs::symlink_status(path, error)))
            return path;
        const fs::path link = fs::read_symlink(path, error);
        if (error)
            return path;
        path = link.is_absolute() ? link : path.parent_path() / link;
    }
    return path;
}

SaveResult checkSaveTarget(const fs::path& target)
{
    const fs::path path = saveTargetOf(target);
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0) {
        if (!S_ISREG(info.st_mode))
            return {SaveProblem::NotRegularFile, 0, kindOf(info.st_mode)};
        if (::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0)
            return {SaveProblem::NotWritable, errno, {}};
    } else if (errno != ENOENT) {
        return {SaveProblem::CannotCreate, errno, {}};
    }
    // The rename needs a writable folder, whether or not the file exists.
    const fs::path folder = folderOf(path);
    if (::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return {SaveProblem::CannotCreate, errno, {}};
    return {};
}

SaveResult checkSaveRoom(const fs::path& target, std::uint64_t bytes)
{
    struct statvfs disk {};
    if (::statvfs(folderOf(saveTargetOf(target)).c_str(), &disk) != 0)
        return {}; // the save itself will say what is wrong
    const std::uint64_t room = static_cast<std::uint64_t>(disk.f_bavail) * disk.f_frsize;
    if (room < bytes)
        return {SaveProblem::DiskFull, ENOSPC, {}};
    return {};
}

bool wouldReplace(const fs::path& target, const fs::path& source)
{
    std::error_code error;
    return fs::equivalent(target, source, error) && !error;
}

SafeFileWriter::SafeFileWriter(const fs::path& target) : resolved(saveTargetOf(target))
{
    outcome = checkSaveTarget(resolved);
    if (!outcome)
        return;
    removeStaleTemporaries(resolved);
    const std::string suffix = kTemporaryMark + std::to_string(::getpid());
    std::string pattern = (folderOf(resolved) / resolved.filename()).string() + ".XXXXXX" + suffix;
    fd = ::mkstemps(pattern.data(), static_cast<int>(suffix.size()));
    if (fd < 0) {
        fail(SaveProblem::CannotCreate, errno);
        return;
    }
    ::fcntl(fd, F_SETFD, FD_CLOEXEC);
    temporary = pattern;
}

SafeFileWriter::~SafeFileWriter() { discard(); }

void SafeFileWriter::fail(SaveProblem problem, int error)
{
    outcome = {error == ENOSPC ? SaveProblem::DiskFull : problem, error, {}};
}

bool SafeFileWriter::write(std::span<const std::uint8_t> bytes)
{
    if (!outcome || fd < 0)
        return false;
    int error = 0;
    if (!writeAll(fd, bytes.data(), bytes.size(), error)) {
        fail(SaveProblem::WriteFailed, error);
        return false;
    }
    written += bytes.size();
    return true;
}

SaveResult SafeFileWriter::commit()
{
    if (!outcome || fd < 0) {
        discard();
        return outcome;
    }
    // The new file keeps the permissions and, where allowed, the owner of the
    // file it replaces; a new file gets what the umask gives.
    struct stat info {};
    if (::stat(resolved.c_str(), &info) == 0) {
        ::fchmod(fd, info.st_mode & 07777);
        if (::fchown(fd, info.st_uid, info.st_gid) != 0)
            ::fchown(fd, static_cast<uid_t>(-1), info.st_gid);
    } else {
        ::fchmod(fd, newFileMode());
    }
    if (::fsync(fd) != 0) {
        fail(SaveProblem::WriteFailed, errno);
        discard();
        return outcome;
    }
    const int closed = ::close(fd);
    fd = -1;
    if (closed != 0) {
        fail(SaveProblem::WriteFailed, errno);
        discard();
        return outcome;
    }
    // Checked again just before the rename: the file may have changed hands
    // during a long transfer.
    if (SaveResult late = checkSaveTarget(resolved); !late) {
        outcome = late;
        discard();
        return outcome;
    }
    if (::rename(temporary.c_str(), resolved.c_str()) != 0) {
        fail(SaveProblem::WriteFailed, errno);
        discard();
        return outcome;
    }
    temporary.clear();
    syncFolder(folderOf(resolved));
    return outcome;
}

void SafeFileWriter::discard()
{
    if (fd >= 0) {
        ::close(fd);
        fd = -1;
    }
    if (!temporary.empty()) {
        ::unlink(temporary.c_str());
        temporary.clear();
    }
}

SaveResult writeFileAtomically(const fs::path& target, std::span<const std::uint8_t> bytes)
{
    SafeFileWriter writer(target);
    writer.write(bytes);
    return writer.commit();
}

void removeStaleTemporaries(const fs::path& target)
{
    const fs::path resolved = saveTargetOf(target);
    const std::string name = resolved.filename().string();
    std::error_code error;
    for (fs::directory_iterator entry(folderOf(resolved), error), end; !error && entry != end; entry.increment(error)) {
        const long owner = temporaryOwner(entry->path().filename().string(), name);
        if (owner != 0 && processIsGone(owner) && fs::is_regular_file(entry->symlink_status()))
            fs::remove(entry->path(), error);
    }
}

bool FileRead::missing() const { return error == ENOENT; }

std::string FileRead::cause() const
{
    if (!kind.empty())
        return "not a regular file (" + kind + ")";
    return std::strerror(error);
}

FileRead readFileBytes(const fs::path& path, std::uint64_t limit)
{
    FileRead read;
    // Non-blocking, so naming a FIFO refuses it instead of waiting for a writer.
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        read.error = errno;
        return read;
    }
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        read.error = EINVAL;
        read.kind = kindOf(info.st_mode);
        ::close(fd);
        return read;
    }
    if (static_cast<std::uint64_t>(info.st_size) > limit) {
        read.error = EFBIG;
        ::close(fd);
        return read;
    }
    read.bytes.reserve(static_cast<std::size_t>(info.st_size));
    std::vector<std::uint8_t> piece(1 << 20);
    for (;;) {
        const ssize_t got = ::read(fd, piece.data(), piece.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            read.error = errno;
            read.bytes.clear();
            break;
        }
        if (got == 0)
            break;
        if (read.bytes.size() + static_cast<std::size_t>(got) > limit) { // grown since it was measured
            read.error = EFBIG;
            read.bytes.clear();
            break;
        }
        read.bytes.insert(read.bytes.end(), piece.begin(), piece.begin() + got);
    }
    ::close(fd);
    return read;
}

} // namespace rk4
