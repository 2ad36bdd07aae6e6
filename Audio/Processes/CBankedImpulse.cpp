#include "Audio/Processes/CBankedImpulse.h"

#include "Audio/Processes/CImpulseLoader.h"
#include "Core/CMemoryReader.h"

namespace tsm {

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
