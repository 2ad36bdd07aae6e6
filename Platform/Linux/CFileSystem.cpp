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
