#include "Platform/CFileSystem.h"

#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace tsm {
namespace {

constexpr mode_t kNewFolderMode = 0777; // less what the user's mask takes away

} // namespace

EPathKind pathKind(const char* path) noexcept
{
    struct stat info {};
    if (stat(path, &info) != 0)
        return EPathKind::Missing;
    if (S_ISDIR(info.st_mode))
        return EPathKind::Folder;
    return S_ISREG(info.st_mode) ? EPathKind::File : EPathKind::Other;
}

int getFileStamp(const char* path, CFileStamp& stamp) noexcept
{
    constexpr std::int64_t kPerSecond = 1000000000;
    struct stat info {};
    if (stat(path, &info) != 0)
        return errno;
    if (!S_ISREG(info.st_mode))
        return S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
    stamp = {info.st_ino, info.st_size, info.st_mtim.tv_sec * kPerSecond + info.st_mtim.tv_nsec};
    return 0;
}

int makeFolder(const char* path) noexcept
{
    return mkdir(path, kNewFolderMode) == 0 ? 0 : errno;
}

int replaceFile(const char* from, const char* to) noexcept
{
    return std::rename(from, to) == 0 ? 0 : errno;
}

int removeFile(const char* path) noexcept
{
    return unlink(path) == 0 || errno == ENOENT || errno == ENOTDIR ? 0 : errno;
}

} // namespace tsm
