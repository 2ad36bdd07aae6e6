#include "Tools/Support/CWholeFile.h"

#include "Core/CText.h"
#include "Tools/Support/CTemporaryFile.h"

#include <cerrno>
#include <cstring>
#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

namespace tsm {

CError* writeWholeFile(const std::string& path, std::string_view bytes)
{
    CTemporaryFile file;
    TSM_TRY(file.create(path));
    while (!bytes.empty()) {
        const ssize_t done = write(file.getDescriptor(), bytes.data(), bytes.size());
        if (done < 0 && errno != EINTR)
            return file.writeError(std::strerror(errno));
        bytes.remove_prefix(done > 0 ? static_cast<std::size_t>(done) : 0);
    }
    return file.commit();
}

CError* readWholeFile(const std::string& path, std::size_t limit, std::string& bytes)
{
    const CString name = CString::fromUtf8(path);
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        TSM_FAIL("can't open '%1': %2", name, std::strerror(errno));
    if (!S_ISREG(status.st_mode))
        TSM_FAIL("can't open '%1': not a regular file", name);
    if (static_cast<std::size_t>(status.st_size) > limit)
        TSM_FAIL("'%1' is longer than %2 bytes", name, toString(static_cast<std::int64_t>(limit)));
    bytes.resize(static_cast<std::size_t>(status.st_size));
    std::ifstream in(path, std::ios::binary);
    if (!in || !in.read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
        TSM_FAIL("can't read '%1'", name);
    return nullptr;
}

} // namespace tsm
