#include "Audio/Processes/CBankedImpulse.h"

#include "Audio/Processes/CImpulseLoader.h"
#include "Core/CMemoryReader.h"
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

std::size_t CBankedImpulse::getByteCount() const noexcept
{
    std::size_t bytes = 0;
    for (const rsk::CDSPConvolverImpulse& channel : channels)
        bytes += channel.getByteCount();
    return bytes;
}

rsk::CDSPImpulseRef channelOf(const CBankedImpulseRef& impulse, int index)
{
    const int at = index < impulse->channels.getCount() ? index : 0;
    return {impulse, &impulse->channels[at]};
}

CError* loadImpulse(CBankedImpulseRef& impulse, const CImpulseSource& source, double rate,
                    int wantedChannels)
{
    const CFileSet::CItem* item = source.getItem();
    CMemoryReader memory(item ? item->getData() : nullptr, item ? item->getSize() : 0);
    CWaveFile file;
    TSM_TRY(item ? file.open(memory) : file.open(source.getPath()));
    const auto loaded = std::make_shared<CBankedImpulse>();
    CImpulseLoader loader(file, rate);
    TSM_TRY(loader.load(*loaded, wantedChannels));
    impulse = loaded;
    return nullptr;
}

} // namespace tsm
