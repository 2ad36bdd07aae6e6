#include "Platform/CNativeFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tsm {
namespace {

constexpr mode_t kNewFileMode = 0666; // less what the user's mask takes away

int descriptor(std::intptr_t handle) noexcept
{
    return static_cast<int>(handle);
}

int openFlags(CNativeFile::EMode mode) noexcept
{
    switch (mode) {
    case CNativeFile::EMode::ReadWrite:
        return O_RDWR | O_CREAT;
    case CNativeFile::EMode::Rewrite:
        return O_WRONLY | O_CREAT | O_TRUNC;
    case CNativeFile::EMode::Append:
        return O_WRONLY | O_CREAT;
    case CNativeFile::EMode::Create:
        return O_WRONLY | O_CREAT | O_EXCL;
    case CNativeFile::EMode::Read:
        break;
    }
    return O_RDONLY;
}

/// Brings a fresh descriptor to where its mode wants it.
int prepare(int fd, CNativeFile::EMode mode)
{
    struct stat info {};
    if (fstat(fd, &info) != 0)
        return errno;
    // A folder opens for reading and would fail with the first read only.
    if (S_ISDIR(info.st_mode))
        return EISDIR;
    if (!S_ISREG(info.st_mode))
        return 0;
    // Advice only: a file system may not know it.
    (void)posix_fadvise(fd, 0, 0, POSIX_FADV_SEQUENTIAL);
    // Not O_APPEND: the position may be set elsewhere afterwards.
    if (mode == CNativeFile::EMode::Append && lseek(fd, 0, SEEK_END) < 0)
        return errno;
    return 0;
}

} // namespace

CNativeFile::~CNativeFile()
{
    // A file whose last write matters was closed by its owner, who looked at the result.
    (void)close();
}

int CNativeFile::open(const char* path, EMode mode)
{
    if (const int code = close())
        return code;
    int fd = -1;
    do
        fd = ::open(path, openFlags(mode) | O_CLOEXEC | O_NOCTTY, kNewFileMode);
    while (fd < 0 && errno == EINTR);
    if (fd < 0)
        return errno;
    if (const int code = prepare(fd, mode)) {
        ::close(fd);
        return code;
    }
    handle = fd;
    isStandard = false;
    return 0;
}

void CNativeFile::openStandard(EStandard which)
{
    (void)close();
    handle = which == EStandard::Input    ? STDIN_FILENO
             : which == EStandard::Output ? STDOUT_FILENO
                                          : STDERR_FILENO;
    isStandard = true;
}

int CNativeFile::close()
{
    if (!isOpen())
        return 0;
    const int fd = descriptor(handle);
    handle = -1;
    // An interrupted close has given the descriptor up all the same; a second one could hit a file
    // that another thread has opened meanwhile.
    if (!isStandard && ::close(fd) != 0 && errno != EINTR)
        return errno;
    return 0;
}

int CNativeFile::read(void* buffer, std::int64_t count, std::int64_t& done)
{
    done = 0;
    if (count < 0)
        return EINVAL;
    while (done < count) {
        const ssize_t got = ::read(descriptor(handle), static_cast<char*>(buffer) + done,
                                   static_cast<std::size_t>(count - done));
        if (got == 0)
            break;
        if (got > 0)
            done += got;
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

int CNativeFile::write(const void* buffer, std::int64_t count, std::int64_t& done)
{
    done = 0;
    if (count < 0)
        return EINVAL;
    while (done < count) {
        const ssize_t put = ::write(descriptor(handle), static_cast<const char*>(buffer) + done,
                                    static_cast<std::size_t>(count - done));
        if (put == 0)
            break;
        if (put > 0)
            done += put;
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

int CNativeFile::flush()
{
    while (fdatasync(descriptor(handle)) != 0)
        if (errno != EINTR)
            return errno == EINVAL ? 0 : errno; // a file system or stream that keeps nothing back
    return 0;
}

int CNativeFile::seek(std::int64_t position)
{
    return lseek(descriptor(handle), position, SEEK_SET) < 0 ? errno : 0;
}

int CNativeFile::seekBy(std::int64_t offset)
{
    return lseek(descriptor(handle), offset, SEEK_CUR) < 0 ? errno : 0;
}

int CNativeFile::tell(std::int64_t& position) const
{
    position = lseek(descriptor(handle), 0, SEEK_CUR);
    return position < 0 ? errno : 0;
}

int CNativeFile::getSize(std::int64_t& size) const
{
    struct stat info {};
    if (fstat(descriptor(handle), &info) != 0)
        return errno;
    if (!S_ISREG(info.st_mode))
        return ESPIPE;
    size = info.st_size;
    return 0;
}

} // namespace tsm
