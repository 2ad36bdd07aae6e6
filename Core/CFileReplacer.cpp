#include "Core/CFileReplacer.h"

#include "Core/CText.h"
#include "Platform/CFileSystem.h"
#include "Platform/CProcessId.h"
#include "Platform/CThreadId.h"

#include <atomic>
#include <cstdint>

namespace tsm {
namespace {

constexpr int kNameTries = 16;

/// A hidden name that no other thread or process uses. Process numbers repeat, on machines that
/// share a folder too; so the file is only created if there is none of that name yet.
std::string temporaryName()
{
    static std::atomic<std::uint32_t> counter = 0;
    return ".tmp-" + std::to_string(currentProcessId()) + "-" + std::to_string(currentThreadId()) +
           "-" + std::to_string(++counter);
}

} // namespace

CFileReplacer::~CFileReplacer()
{
    discard();
}

CError* CFileReplacer::open(const CString& fileName)
{
    discard();
    name = fileName;
    target = fileName.toUtf8();
    if (const int code = createTemporary())
        TSM_FAIL("@tsmstr_CFileReplacer_open_OpenError Unable to open file '%1' for %2 (error %3).",
                 name, "replacing", toString(code));
    return nullptr;
}

int CFileReplacer::createTemporary()
{
    const std::string folder = target.substr(0, target.rfind('/') + 1);
    int code = 0;
    for (int i = 0; i < kNameTries; ++i) {
        temporary = folder + temporaryName();
        code = file.open(temporary.c_str(), CNativeFile::EMode::Create);
        if (code == 0)
            return 0;
        if (pathKind(temporary.c_str()) == EPathKind::Missing)
            break; // it isn't the name that is refused
    }
    temporary.clear();
    return code;
}

CError* CFileReplacer::write(const void* buffer, int count)
{
    if (temporary.empty())
        TSM_FAIL("@tsmstr_CFileReplacer_write_NotOpen No file is open for replacing.");
    std::int64_t done = 0;
    if (const int code = file.write(buffer, count, done))
        TSM_FAIL("@tsmstr_CFileReplacer_write_WriteError Unable to write to file '%1' (error %2).",
                 name, toString(code));
    if (done != count)
        TSM_FAIL("@tsmstr_CFileReplacer_write_WriteErrorCount "
                 "Unable to write to file '%1' (required %2 bytes, written %3 bytes).",
                 name, toString(count), toString(done));
    return nullptr;
}

CError* CFileReplacer::commit()
{
    if (temporary.empty())
        TSM_FAIL("@tsmstr_CFileReplacer_commit_NotOpen No file is open for replacing.");
    if (const int code = putInPlace()) {
        discard();
        TSM_FAIL("@tsmstr_CFileReplacer_commit_ReplaceError "
                 "Unable to replace file '%1' (error %2).",
                 name, toString(code));
    }
    temporary.clear();
    return nullptr;
}

int CFileReplacer::putInPlace()
{
    if (const int code = file.flush())
        return code;
    // Some file systems tell of a lack of room no sooner than here.
    if (const int code = file.close())
        return code;
    return replaceFile(temporary.c_str(), target.c_str());
}

void CFileReplacer::discard() noexcept
{
    // What the file system says of a file that is dropped helps nobody.
    (void)file.close();
    if (!temporary.empty())
        (void)removeFile(temporary.c_str());
    temporary.clear();
}

} // namespace tsm
