#include "Audio/CRoutingPresets.h"

#include "Audio/CPresetItem.h"

namespace tsm {

namespace {

/// The numbers of an item's first group; none for an item that isn't there or holds no numbers.
CArray<double> readNumbers(const CAudioPreset& preset, const char* key)
{
    CArray<double> numbers;
    const CByteBuffer* const bytes = preset.items.find(key);
    CString definition;
    CAudioParamStorage values;
    if (!bytes)
        return numbers;
    const CPtr<CError> error(readPresetItem(*bytes, definition, values));
    if (error || values.getShape().dataType != EAudioParamType::Number)
        return numbers;
    for (int i = 0; i < values.getElementCount(0); ++i)
        numbers.add(values.value(0, i));
    return numbers;
}

bool hasNonZero(const CArray<double>& numbers)
{
    for (const double number : numbers)
        if (number != 0.0)
            return true;
    return false;
}

bool isOwnIndexEach(const CArray<double>& numbers)
{
    for (int i = 0; i < numbers.getCount(); ++i)
        if (numbers[i] != i)
            return false;
    return true;
}

} // namespace

bool isRoutingPresetUsable(const CAudioPreset& preset, bool useMidSide, bool useSidechain)
{
    if (hasNonZero(readNumbers(preset, "ms-pairs")) && !useMidSide)
        return false;
    const bool hasSidechain = hasNonZero(readNumbers(preset, "sidechain-mute")) ||
                              !isOwnIndexEach(readNumbers(preset, "sidechain"));
    return useSidechain || !hasSidechain;
}

} // namespace tsm
