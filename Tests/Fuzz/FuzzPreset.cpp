// A preset, and as a routing preset.

#include "Audio/CAudioPreset.h"
#include "Audio/CRoutingPresets.h"
#include "Core/CMemoryReader.h"
#include "Tests/Fuzz/FuzzTarget.h"

namespace tsm {

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    CGuardedInput source(data, size);
    CAudioPreset preset;
    if (hasFailed(preset.load(source)))
        return;
    (void)isRoutingPresetUsable(preset, false, false);
    const auto save = [](const CAudioPreset& from) {
        return bytesOf([&](COutputStream& stream) { return from.save(stream); });
    };
    const CByteBuffer saved = save(preset);
    CMemoryReader reader(saved);
    CAudioPreset again;
    promise(!hasFailed(again.load(reader)), "what is saved loads");
    // Halves of surrogate pairs aren't saved, and keys that differ in nothing else become one.
    promise(again.items.getCount() <= preset.items.getCount(), "no item comes from nowhere");
    const CByteBuffer settled = save(again);
    CMemoryReader settledReader(settled);
    CAudioPreset same;
    promise(!hasFailed(same.load(settledReader)), "what is saved loads");
    promise(save(same) == settled, "what is saved loads equal");
    again.setName(preset.getId(), preset.getDisplayName());
    promise(again.getDisplayName() == preset.getDisplayName() || preset.getId().isEmpty(),
            "the parts of a name make it up");
}

} // namespace tsm
