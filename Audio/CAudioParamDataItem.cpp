#include "Audio/CAudioParamDataItem.h"

#include "Core/CText.h"

#include <algorithm>

namespace tsm {

CPtr<CAudioParamDataItem> CAudioParamDataItem::create(EAudioParamType type)
{
    if (type == EAudioParamType::String)
        return CPtr<CAudioParamDataItem>(new CAudioParamDataItemString);
    if (type == EAudioParamType::Raw)
        return CPtr<CAudioParamDataItem>(new CAudioParamDataItemRaw);
    return CPtr<CAudioParamDataItem>();
}

CAudioParamDataItem* CAudioParamDataItemString::clone() const
{
    return new CAudioParamDataItemString(text);
}

CError* CAudioParamDataItemString::save(COutputStream& stream) const
{
    TSM_TRY(stream.writeString(text));
    return nullptr;
}

CError* CAudioParamDataItemString::load(CInputStream& stream)
{
    TSM_TRY(stream.readString(text));
    return nullptr;
}

CAudioParamDataItem* CAudioParamDataItemRaw::clone() const
{
    return new CAudioParamDataItemRaw(block.data(), block.getSize());
}

CError* CAudioParamDataItemRaw::save(COutputStream& stream) const
{
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(block.getSize())));
    TSM_TRY(stream.write(block.data(), block.getSize()));
    return nullptr;
}

CError* CAudioParamDataItemRaw::load(CInputStream& stream)
{
    constexpr std::uint32_t kStep = 65536;
    std::uint32_t left = 0;
    TSM_TRY(stream.readValue(left));
    if (left > kMaxBytes)
        TSM_FAIL("@tsmstr_CAudioParamDataItemRaw_load_SizeError Invalid block size %1.",
                 toString(left));
    block.clear();
    while (left > 0) {
        const int step = static_cast<int>(std::min(left, kStep));
        const int size = block.getSize();
        block.resize(size + step);
        TSM_TRY(stream.read(block.data() + size, step));
        left -= static_cast<std::uint32_t>(step);
    }
    return nullptr;
}

} // namespace tsm
