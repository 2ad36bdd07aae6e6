#include "Other/CFileSet.h"

#include "Core/CText.h"

#include <algorithm>
#include <limits>

namespace tsm {
namespace {

constexpr std::uint32_t kVersion = 1;

} // namespace

CError* CFileSet::loadFrom(CPosInputStream& stream)
{
    CFileSet fresh;
    TSM_TRY(fresh.loadItems(stream));
    fresh.sortNames();
    itemsById = std::move(fresh.itemsById); // items keep their addresses
    itemsByName = std::move(fresh.itemsByName);
    return nullptr;
}

CError* CFileSet::loadItems(CPosInputStream& stream)
{
    std::uint32_t version = 0;
    TSM_TRY(stream.readValue(version));
    if (version != kVersion)
        return nullptr;
    std::uint32_t count = 0;
    TSM_TRY(stream.readValue(count));
    for (; count > 0; --count)
        TSM_TRY(loadItem(stream));
    return nullptr;
}

CError* CFileSet::loadItem(CPosInputStream& stream)
{
    std::uint32_t id = 0;
    TSM_TRY(stream.readValue(id));
    CItem& item = enter(id);
    TSM_TRY(stream.readString(item.name));
    TSM_TRY(loadData(stream, item));
    return nullptr;
}

CError* CFileSet::loadData(CPosInputStream& stream, CItem& item)
{
    std::uint32_t size = 0;
    std::uint64_t position = 0;
    std::uint64_t end = 0;
    TSM_TRY(stream.readValue(size));
    TSM_TRY(stream.getPosition(position));
    TSM_TRY(stream.getSize(end));
    // Before the size is believed: skipping in a file doesn't look at its end.
    if (size > std::numeric_limits<std::int32_t>::max() || position > end || size > end - position)
        TSM_FAIL("@tsmstr_CFileSet_loadData_DataError "
                 "The file set ends within an item (%1 bytes at %2, size %3).",
                 toString(size), toString(static_cast<std::int64_t>(position)),
                 toString(static_cast<std::int64_t>(end)));
    item.size = static_cast<std::int32_t>(size);
    item.outside = static_cast<const std::uint8_t*>(stream.getMemoryPtr());
    if (item.outside) {
        TSM_TRY(stream.skip(item.size));
        return nullptr;
    }
    item.owned.resize(item.size);
    TSM_TRY(stream.read(item.owned.data(), item.size));
    return nullptr;
}

CError* CFileSet::writeTo(COutputStream& stream) const
{
    TSM_TRY(stream.writeValue(kVersion));
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(getCount())));
    for (const auto& entry : itemsById) {
        const CItem& item = entry.value;
        TSM_TRY(stream.writeValue(item.id));
        TSM_TRY(stream.writeString(item.name));
        TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(item.size)));
        TSM_TRY(stream.write(item.getData(), item.size));
    }
    return nullptr;
}

void CFileSet::add(std::uint32_t id, const CString& name, const CByteBuffer& data)
{
    CItem& item = enter(id);
    item.name = name;
    item.owned = data;
    item.size = data.getSize();
    item.outside = nullptr;
    sortNames();
}

const CFileSet::CItem* CFileSet::find(std::uint32_t id) const noexcept
{
    return itemsById.find(id);
}

CFileSet::CItem& CFileSet::enter(std::uint32_t id)
{
    CItem& item = itemsById[id];
    item.id = id;
    return item;
}

void CFileSet::sortNames()
{
    itemsByName.clear();
    for (const auto& entry : itemsById)
        itemsByName.add(&entry.value);
    // Equal names stay in the order of their ids.
    std::stable_sort(itemsByName.begin(), itemsByName.end(), [](const CItem* a, const CItem* b) {
        return CString::order(a->name, b->name) < 0;
    });
}

} // namespace tsm
