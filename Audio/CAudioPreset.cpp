#include "Audio/CAudioPreset.h"

#include "Core/CInputStream.h"
#include "Core/COutputStream.h"
#include "Core/CText.h"

namespace tsm {

CString CAudioPreset::getId() const
{
    const int colon = name.find(static_cast<std::uint16_t>(':'));
    return colon < 0 ? CString() : name.substring(0, colon);
}

CString CAudioPreset::getDisplayName() const
{
    const int colon = name.find(static_cast<std::uint16_t>(':'));
    return name.substring(colon + 1);
}

void CAudioPreset::setName(const CString& id, const CString& displayName)
{
    name = id + ":" + displayName;
}

CError* CAudioPreset::save(COutputStream& stream) const
{
    TSM_TRY(stream.writeString(name));
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(items.getCount())));
    for (const auto& item : items) {
        TSM_TRY(stream.writeString(item.key));
        TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(item.value.getSize())));
        TSM_TRY(stream.write(item.value.data(), item.value.getSize()));
    }
    return nullptr;
}

CError* CAudioPreset::load(CInputStream& stream)
{
    items.clear();
    std::uint32_t count = 0;
    TSM_TRY(stream.readString(name));
    TSM_TRY(stream.readValue(count));
    if (count > kMaxItems)
        TSM_FAIL("The preset '%1' claims %2 items.", name, toString(count));
    for (std::uint32_t i = 0; i < count; ++i) {
        CString key;
        std::uint32_t size = 0;
        TSM_TRY(stream.readString(key));
        TSM_TRY(stream.readValue(size));
        if (size > kMaxItemBytes)
            TSM_FAIL("The item '%1' of the preset '%2' claims %3 bytes.", key, name,
                     toString(size));
        TSM_TRY(stream.readBytes(items[key], static_cast<int>(size)));
    }
    return nullptr;
}

} // namespace tsm
