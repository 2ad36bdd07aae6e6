#pragma once

#include "Audio/CAudioParamDataItem.h"
#include "Core/CMap.h"

namespace tsm {

/// The texts or blocks of a text or raw parameter, by the ids that stand in its values. Ids count
/// up from 1; 0 is none.
class CAudioParamData : public CCheckedObject {
public:
    CAudioParamData() = default;
    CAudioParamData(CAudioParamData&&) noexcept;
    CAudioParamData& operator=(CAudioParamData&&) noexcept;
    /// Copies keep the ids.
    CAudioParamData(const CAudioParamData& other);
    CAudioParamData& operator=(const CAudioParamData& other);
    ~CAudioParamData() { clear(); }

    [[nodiscard]] int getCount() const noexcept { return items.getCount(); }
    /// The item of an id, or null.
    [[nodiscard]] const CAudioParamDataItem* find(std::int32_t id) const noexcept;
    /// The same for an id as it stands among the values.
    [[nodiscard]] const CAudioParamDataItem* findValue(double value) const noexcept;
    /// Enters an item, which this object owns from here on; returns its new id.
    std::int32_t add(CPtr<CAudioParamDataItem> item);
    /// Enters an item under a given id (above 0), in place of the one that had it.
    void put(std::int32_t id, CPtr<CAudioParamDataItem> item);
    /// Takes an item out and hands it to the caller; empty for an unknown id.
    [[nodiscard]] CPtr<CAudioParamDataItem> take(std::int32_t id);
    /// Takes over all items of `other`, under new ids.
    void absorb(CAudioParamData& other);
    void clear() noexcept;

    /// Writes the table: u32 item count; then for each item in order of ids u32 id, u32 type, body.
    [[nodiscard]] CError* save(COutputStream& stream) const;
    /// Reads a table in place of the present items. Errors: an unknown type, more items than a
    /// parameter has values, cut data.
    [[nodiscard]] CError* load(CInputStream& stream);

private:
    static constexpr std::uint32_t kMaxItems = kMaxParamGroups * kMaxParamElements;

    [[nodiscard]] CError* loadItem(CInputStream& stream, std::uint32_t place, bool& isInOrder);

    std::int32_t nextId = 1;
    CMap<std::int32_t, CAudioParamDataItem*> items;
};

} // namespace tsm
