// A bank or a stored list, as the first byte says.

#include "Audio/CAudioPresetBank.h"
#include "Core/CMemoryReader.h"
#include "Tests/Fuzz/FuzzTarget.h"

namespace tsm {

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    const bool isList = CFuzzChoice(data, size).bit(0);
    const auto load = [isList](CAudioPresetBank& bank, CInputStream& stream) {
        return isList ? bank.loadList(stream) : bank.load(stream);
    };
    const auto save = [isList](const CAudioPresetBank& bank) {
        return bytesOf(
            [&](COutputStream& out) { return isList ? bank.saveList(out) : bank.save(out); });
    };
    CGuardedInput source(data, size);
    CAudioPresetBank bank;
    if (hasFailed(load(bank, source)))
        return;
    const auto reload = [&](const CByteBuffer& saved) {
        CMemoryReader reader(saved);
        CAudioPresetBank again;
        promise(!hasFailed(load(again, reader)), "what is saved loads");
        return save(again);
    };
    // Halves of surrogate pairs aren't saved: without them keys have another order, or become one.
    const CByteBuffer settled = reload(save(bank));
    promise(reload(settled) == settled, "what is saved loads equal");
}

} // namespace tsm
