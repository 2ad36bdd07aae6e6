#include "Core/CFileBase.h"

#include "Core/CText.h"

namespace tsm {

CFileBase::~CFileBase()
{
    handleError(close());
}

CError* CFileBase::close()
{
    if (const int code = file.close())
        TSM_FAIL("@tsmstr_CFileBase_close_CloseError Unable to close file '%1' (error %2).", name,
                 toString(code));
    return nullptr;
}

CError* CFileBase::getPosition(std::uint64_t& position)
{
    std::int64_t place = 0;
    if (const int code = file.tell(place))
        TSM_FAIL("@tsmstr_CFileBase_getPosition_PosError "
                 "Unable to get file's '%1' position (error %2).",
                 name, toString(code));
    position = static_cast<std::uint64_t>(place);
    return nullptr;
}

CError* CFileBase::getSize(std::uint64_t& size)
{
    std::int64_t bytes = 0;
    if (const int code = file.getSize(bytes))
        TSM_FAIL("@tsmstr_CFileBase_getSize_FileSizeError "
                 "Unable to get file's '%1' size (error %2).",
                 name, toString(code));
    size = static_cast<std::uint64_t>(bytes);
    return nullptr;
}

CError* CFileBase::setPosition(std::uint64_t position)
{
    // What doesn't fit the signed position turns negative and is refused by the system.
    const auto place = static_cast<std::int64_t>(position);
    if (const int code = file.seek(place))
        TSM_FAIL("@tsmstr_CFileBase_setPosition_PosError "
                 "Unable to set file's '%1' position to %2 (error %3).",
                 name, toString(place), toString(code));
    return nullptr;
}

int CFileBase::openFile(const CString& fileName, CNativeFile::EMode mode)
{
    name = fileName;
    return file.open(fileName.toUtf8().c_str(), mode);
}

void CFileBase::openStandard(CNativeFile::EStandard which, const char* streamName)
{
    name = streamName;
    file.openStandard(which);
}

} // namespace tsm
