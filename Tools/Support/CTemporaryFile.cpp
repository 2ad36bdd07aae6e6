#include "Tools/Support/CTemporaryFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace tsm {

namespace {

/// mkstemp keeps other users out; a result file has the rights that any new file gets.
void setUsualRights(int descriptor)
{
    const mode_t mask = umask(0);
    umask(mask);
    // Without the rights the file is still whole, so a refusal is no failure.
    [[maybe_unused]] const int result = fchmod(descriptor, 0666 & ~mask);
}

} // namespace

CTemporaryFile::~CTemporaryFile()
{
    closeDescriptor();
    if (!temporaryPath.empty())
        unlink(temporaryPath.c_str());
}

CError* CTemporaryFile::create(const std::string& path)
{
    finalPath = path;
    struct stat status = {};
    if (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        return writeError("not a regular file");
    const std::size_t slash = path.rfind('/');
    const std::size_t nameAt = slash == std::string::npos ? 0 : slash + 1;
    std::string pattern = path.substr(0, nameAt) + "." + path.substr(nameAt) + ".XXXXXX";
    descriptor = mkstemp(pattern.data());
    if (descriptor < 0)
        return writeError(std::strerror(errno));
    temporaryPath = pattern;
    setUsualRights(descriptor);
    return nullptr;
}

CError* CTemporaryFile::commit()
{
    if (fsync(descriptor) != 0)
        return writeError(std::strerror(errno));
    closeDescriptor();
    if (std::rename(temporaryPath.c_str(), finalPath.c_str()) != 0)
        return writeError(std::strerror(errno));
    temporaryPath.clear();
    return nullptr;
}

CError* CTemporaryFile::writeError(const char* reason) const
{
    TSM_FAIL("can't write '%1': %2", CString::fromUtf8(finalPath), CString(reason).trimmed());
}

void CTemporaryFile::closeDescriptor() noexcept
{
    if (descriptor >= 0)
        close(descriptor);
    descriptor = -1;
}

} // namespace tsm
