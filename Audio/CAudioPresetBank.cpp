#include "Audio/CAudioPresetBank.h"

#include "Core/CInputStream.h"
#include "Core/COutputStream.h"
#include "Core/CText.h"

namespace tsm {

CError* CAudioPresetBank::save(COutputStream& stream) const
{
    TSM_TRY(stream.writeString(name));
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(presets.getCount())));
    for (const CAudioPreset& preset : presets)
        TSM_TRY(preset.save(stream));
    return nullptr;
}

CError* CAudioPresetBank::load(CInputStream& stream)
{
    presets.clear();
    std::uint32_t count = 0;
    TSM_TRY(stream.readString(name));
    TSM_TRY(stream.readValue(count));
    if (count > kMaxPresets)
        TSM_FAIL("The bank '%1' claims %2 presets.", name, toString(count));
    for (std::uint32_t i = 0; i < count; ++i)
        TSM_TRY(presets.create().load(stream));
    return nullptr;
}

CError* CAudioPresetBank::saveList(COutputStream& stream) const
{
    TSM_TRY(stream.writeValue(std::uint32_t(presets.isEmpty() ? 0 : 1)));
    if (presets.isEmpty())
        return nullptr;
    CAudioPresetBank unnamed;
    unnamed.copyPresets(*this);
    TSM_TRY(unnamed.save(stream));
    return nullptr;
}

CError* CAudioPresetBank::loadList(CInputStream& stream)
{
    presets.clear();
    std::uint32_t hasContent = 0;
    TSM_TRY(stream.readValue(hasContent));
    if (hasContent)
        TSM_TRY(load(stream));
    return nullptr;
}

void CAudioPresetBank::copyPresets(const CAudioPresetBank& other)
{
    presets.clear();
    for (const CAudioPreset& preset : other.presets)
        presets.add(new CAudioPreset(preset));
}

} // namespace tsm
