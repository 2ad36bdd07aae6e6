#include "Core/CFileReader.h"

#include "Core/CText.h"

namespace tsm {

CError* CFileReader::open(const CString& fileName, bool forWriteAccess)
{
    TSM_TRY(close());
    if (fileName == "*") {
        openStandard(CNativeFile::EStandard::Input, "stdin");
        return nullptr;
    }
    const auto mode = forWriteAccess ? CNativeFile::EMode::ReadWrite : CNativeFile::EMode::Read;
    if (const int code = openFile(fileName, mode))
        TSM_FAIL("@tsmstr_CFileReader_open_OpenError "
                 "Unable to open file '%1' for reading (error %2).",
                 name, toString(code));
    return nullptr;
}

CError* CFileReader::skip(int count)
{
    if (count < 1)
        return nullptr;
    if (const int code = file.seekBy(count))
        TSM_FAIL("@tsmstr_CFileReader_skip_PosError "
                 "Unable to increment file's '%1' position by %2 (error %3).",
                 name, toString(count), toString(code));
    return nullptr;
}

CError* CFileReader::read(void* buffer, int count)
{
    std::int64_t done = 0;
    if (const int code = file.read(buffer, count, done))
        TSM_FAIL("@tsmstr_CFileReader_read_ReadError Unable to read from file '%1' (error %2).",
                 name, toString(code));
    if (done != count)
        TSM_FAIL("@tsmstr_CFileReader_read_ReadBeyondEnd "
                 "Unable to read from file '%1' (required %2 bytes, read %3 bytes).",
                 name, toString(count), toString(done));
    return nullptr;
}

CError* CFileReader::readStreamed(void* buffer, int& count)
{
    std::int64_t done = 0;
    if (const int code = file.read(buffer, count, done))
        TSM_FAIL("@tsmstr_CFileReader_readStreamed_ReadError "
                 "Unable to read from file '%1' (error %2).",
                 name, toString(code));
    count = static_cast<int>(done);
    return nullptr;
}

} // namespace tsm
