#include "Audio/Processes/CImpulseSource.h"

#include "Core/CText.h"

namespace tsm {

CError* CImpulseSource::fromSet(CImpulseSource& source, const CFileSetObject& fileSet,
                                std::uint32_t id)
{
    source = {};
    source.item = fileSet.getSet().find(id);
    source.setSerial = fileSet.getSerial();
    if (!source.item)
        TSM_FAIL("@tsmstr_CImpulseSource_fromSet_NoItem The file set '%1' has no item %2.",
                 fileSet.getFullName(), toString(id));
    return nullptr;
}

CError* CImpulseSource::fromFile(CImpulseSource& source, const CString& fileName)
{
    source = {};
    source.path = fileName;
    // What isn't a file might never end, or never begin; "*" would be the standard input.
    const int code = fileName == "*" ? -1 : getFileStamp(fileName.toUtf8().c_str(), source.stamp);
    if (code != 0)
        TSM_FAIL("@tsmstr_CImpulseSource_fromFile_NoFile "
                 "The impulse file '%1' can't be looked at (error %2).",
                 fileName, toString(code));
    return nullptr;
}

} // namespace tsm
