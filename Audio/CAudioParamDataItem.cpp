#include "Audio/CAudioParamDataItem.h"

#include "Core/CText.h"

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
    std::uint32_t size = 0;
    TSM_TRY(stream.readValue(size));
    if (size > kMaxBytes)
        TSM_FAIL("@tsmstr_CAudioParamDataItemRaw_load_SizeError Invalid block size %1.",
                 toString(size));
    TSM_TRY(stream.readBytes(block, static_cast<int>(size)));
    return nullptr;
}

} // namespace tsm
