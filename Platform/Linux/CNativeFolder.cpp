#include "Platform/CNativeFolder.h"

#include <cerrno>
#include <dirent.h>
#include <sys/stat.h>
#include <utility>

namespace tsm {
namespace {

EPathKind kindOf(DIR* folder, const dirent& found)
{
    if (found.d_type == DT_REG)
        return EPathKind::File;
    if (found.d_type == DT_DIR)
        return EPathKind::Folder;
    struct stat info {};
    if (fstatat(dirfd(folder), found.d_name, &info, 0) != 0)
        return EPathKind::Missing;
    if (S_ISDIR(info.st_mode))
        return EPathKind::Folder;
    return S_ISREG(info.st_mode) ? EPathKind::File : EPathKind::Other;
}

} // namespace

int CNativeFolder::open(const char* path)
{
    close();
    DIR* opened = opendir(path);
    if (!opened)
        return errno;
    struct stat info {};
    if (fstat(dirfd(opened), &info) != 0) {
        const int code = errno;
        closedir(opened);
        return code;
    }
    identity = {info.st_dev, info.st_ino};
    handle = opened;
    return 0;
}

void CNativeFolder::close() noexcept
{
    if (void* opened = std::exchange(handle, nullptr))
        closedir(static_cast<DIR*>(opened));
}

int CNativeFolder::next(CEntry& entry, bool& isAtEnd)
{
    DIR* folder = static_cast<DIR*>(handle);
    isAtEnd = false;
    for (;;) {
        errno = 0;
        const dirent* found = readdir(folder);
        if (!found) {
            isAtEnd = true;
            return errno;
        }
        entry.name = found->d_name;
        if (entry.name == "." || entry.name == "..")
            continue;
        entry.kind = kindOf(folder, *found);
        entry.isHidden = entry.name.starts_with('.');
        return 0;
    }
}

} // namespace tsm
