#include "Audio/CAudioParamData.h"

#include "Core/CLog.h"
#include "Core/CRounding.h"
#include "Core/CText.h"

#include <utility>

namespace tsm {

CAudioParamData::CAudioParamData(CAudioParamData&& other) noexcept
    : nextId(std::exchange(other.nextId, 1)), items(std::move(other.items))
{
}

CAudioParamData& CAudioParamData::operator=(CAudioParamData&& other) noexcept
{
    if (this != &other) {
        clear();
        nextId = std::exchange(other.nextId, 1);
        items = std::move(other.items);
    }
    return *this;
}

CAudioParamData::CAudioParamData(const CAudioParamData& other)
{
    *this = other;
}

CAudioParamData& CAudioParamData::operator=(const CAudioParamData& other)
{
    if (this == &other)
        return *this;
    clear();
    nextId = other.nextId;
    for (const auto& entry : other.items)
        items[entry.key] = entry.value->clone();
    return *this;
}

const CAudioParamDataItem* CAudioParamData::find(std::int32_t id) const noexcept
{
    return items.get(id, nullptr);
}

const CAudioParamDataItem* CAudioParamData::findValue(double value) const noexcept
{
    return find(roundToInt(value));
}

std::int32_t CAudioParamData::add(CPtr<CAudioParamDataItem> item)
{
    while (items.contains(nextId) || nextId <= 0)
        nextId = nextId < INT32_MAX && nextId > 0 ? nextId + 1 : 1;
    const std::int32_t id = nextId;
    nextId = id < INT32_MAX ? id + 1 : 1;
    items[id] = item.release();
    return id;
}

void CAudioParamData::put(std::int32_t id, CPtr<CAudioParamDataItem> item)
{
    CAudioParamDataItem*& place = items[id];
    delete std::exchange(place, item.release());
    if (id >= nextId)
        nextId = id < INT32_MAX ? id + 1 : 1;
}

CPtr<CAudioParamDataItem> CAudioParamData::take(std::int32_t id)
{
    CPtr<CAudioParamDataItem> item(items.get(id, nullptr));
    items.remove(id);
    return item;
}

void CAudioParamData::absorb(CAudioParamData& other)
{
    for (const auto& entry : other.items)
        add(CPtr<CAudioParamDataItem>(entry.value));
    other.items.clear();
}

void CAudioParamData::clear() noexcept
{
    for (const auto& entry : items)
        delete entry.value;
    items.clear();
    nextId = 1;
}

CError* CAudioParamData::save(COutputStream& stream) const
{
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(items.getCount())));
    for (const auto& entry : items) {
        TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(entry.key)));
        TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(entry.value->getType())));
        TSM_TRY(entry.value->save(stream));
    }
    return nullptr;
}

CError* CAudioParamData::load(CInputStream& stream)
{
    clear();
    std::uint32_t count = 0;
    TSM_TRY(stream.readValue(count));
    if (count > kMaxItems)
        TSM_FAIL("@tsmstr_CAudioParamData_load_CountError Invalid item count %1.", toString(count));
    // No room is made for the count: each item has to bring its bytes.
    bool isInOrder = true;
    for (std::uint32_t place = 1; count > 0; --count, ++place)
        TSM_TRY(loadItem(stream, place, isInOrder));
    return nullptr;
}

CError* CAudioParamData::loadItem(CInputStream& stream, std::uint32_t place, bool& isInOrder)
{
    std::uint32_t id = 0;
    std::uint32_t type = 0;
    TSM_TRY(stream.readValue(id));
    TSM_TRY(stream.readValue(type));
    CPtr<CAudioParamDataItem> item =
        CAudioParamDataItem::create(static_cast<EAudioParamType>(static_cast<std::int32_t>(type)));
    if (!item)
        TSM_FAIL("@tsmstr_CAudioParamData_load_TypeError Unknown data type %1 encountered",
                 toString(type));
    TSM_TRY(item->load(stream));
    // Told once a table: damaged data would fill the disk with it.
    if (id != place && std::exchange(isInOrder, false))
        logFormat("Unexpected LoadElement %i (expected %i).", static_cast<int>(id),
                  static_cast<int>(place));
    if (id > 0 && id <= static_cast<std::uint32_t>(INT32_MAX))
        put(static_cast<std::int32_t>(id), std::move(item));
    return nullptr;
}

} // namespace tsm
