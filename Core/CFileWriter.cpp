#include "Core/CFileWriter.h"

#include "Core/CText.h"

namespace tsm {

CError* CFileWriter::open(const CString& fileName, bool append)
{
    TSM_TRY(close());
    if (fileName == "*") {
        openStandard(CNativeFile::EStandard::Output, "stdout");
        return nullptr;
    }
    if (fileName == "*e") {
        openStandard(CNativeFile::EStandard::Error, "stderr");
        return nullptr;
    }
    const auto mode = append ? CNativeFile::EMode::Append : CNativeFile::EMode::Rewrite;
    if (const int code = openFile(fileName, mode))
        TSM_FAIL("@tsmstr_CFileWriter_open_OpenError Unable to open file '%1' for %2 (error %3).",
                 name, append ? "appending" : "rewriting", toString(code));
    return nullptr;
}

CError* CFileWriter::write(const void* buffer, int count)
{
    std::int64_t done = 0;
    if (const int code = file.write(buffer, count, done))
        TSM_FAIL("@tsmstr_CFileWriter_write_WriteError Unable to write to file '%1' (error %2).",
                 name, toString(code));
    if (done != count)
        TSM_FAIL("@tsmstr_CFileWriter_write_WriteErrorCount "
                 "Unable to write to file '%1' (required %2 bytes, written %3 bytes).",
                 name, toString(count), toString(done));
    return nullptr;
}

} // namespace tsm
