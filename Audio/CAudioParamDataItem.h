#pragma once

#include "Audio/CAudioParamShape.h"
#include "Core/CByteBuffer.h"
#include "Core/CInputStream.h"
#include "Core/CMemory.h"
#include "Core/COutputStream.h"
#include "Core/CPtr.h"
#include "Core/CString.h"

namespace tsm {

/// One value of a parameter that holds no numbers.
class CAudioParamDataItem : public CCheckedObject, public CTsmMemAllocator {
public:
    virtual ~CAudioParamDataItem() = default;
    /// A copy, owned by the caller.
    [[nodiscard]] virtual CAudioParamDataItem* clone() const = 0;
    [[nodiscard]] virtual CError* save(COutputStream& stream) const = 0;
    [[nodiscard]] virtual CError* load(CInputStream& stream) = 0;
    [[nodiscard]] virtual EAudioParamType getType() const noexcept = 0;

    /// An empty item of that type; null for numbers and unknown types.
    [[nodiscard]] static CPtr<CAudioParamDataItem> create(EAudioParamType type);
};

/// A text.
class CAudioParamDataItemString : public CAudioParamDataItem {
public:
    CAudioParamDataItemString() = default;
    explicit CAudioParamDataItemString(const CString& newText) : text(newText) {}

    [[nodiscard]] CAudioParamDataItem* clone() const override;
    /// The text as UTF-8 behind its u32 byte count.
    [[nodiscard]] CError* save(COutputStream& stream) const override;
    [[nodiscard]] CError* load(CInputStream& stream) override;
    [[nodiscard]] EAudioParamType getType() const noexcept override
    {
        return EAudioParamType::String;
    }

    CString text;
};

/// A block of bytes.
class CAudioParamDataItemRaw : public CAudioParamDataItem {
public:
    CAudioParamDataItemRaw() = default;
    CAudioParamDataItemRaw(const void* bytes, int count) : block(bytes, count) {}

    [[nodiscard]] CAudioParamDataItem* clone() const override;
    /// The bytes behind their u32 count. Reading takes memory step by step, so that a count which
    /// the data don't hold costs nothing. Errors: more than kMaxBytes, cut data.
    [[nodiscard]] CError* save(COutputStream& stream) const override;
    [[nodiscard]] CError* load(CInputStream& stream) override;
    [[nodiscard]] EAudioParamType getType() const noexcept override { return EAudioParamType::Raw; }

    static constexpr std::uint32_t kMaxBytes = 1u << 30;

    CByteBuffer block;
};

} // namespace tsm
