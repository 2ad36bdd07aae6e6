#pragma once

#include "Core/CByteBuffer.h"
#include "Core/CMap.h"
#include "Core/CString.h"

namespace tsm {

class CError;
class CInputStream;
class COutputStream;

/// A set of saved parameter values under a name of the form "id:display name".
struct CAudioPreset : CCheckedObject, CTsmMemAllocator {
    CAudioPreset() = default;
    explicit CAudioPreset(const CString& fullName) : name(fullName) {}

    /// The parts of the name before and behind its first colon; without one all of it is the
    /// second.
    [[nodiscard]] CString getId() const;
    [[nodiscard]] CString getDisplayName() const;
    /// Gives the name these parts.
    void setName(const CString& id, const CString& displayName);

    /// Writes name, item count, and for each item its key, its size and its bytes.
    [[nodiscard]] CError* save(COutputStream& stream) const;
    /// Reads what save() wrote, in place of the present content. Memory grows with what the data
    /// really hold. Errors: cut data, a key or name that is too long, an item above kMaxItemBytes,
    /// more than kMaxItems of them; the content is undefined then.
    [[nodiscard]] CError* load(CInputStream& stream);

    static constexpr std::uint32_t kMaxItemBytes = 1u << 28;
    // An item of no bytes becomes a parameter all the same, which is a hundred times its size.
    static constexpr std::uint32_t kMaxItems = 1u << 16;

    CString name;
    /// By parameter, relative to the registry's hierarchy: the definition's name and the values.
    CMap<CString, CByteBuffer> items;
};

} // namespace tsm
