#include "Audio/CAudioParamStorage.h"
#include "Core/CLog.h"
#include "Core/CRounding.h"
#include "Core/CText.h"

#include <cmath>
#include <utility>

namespace tsm {

namespace {

constexpr std::uint32_t kVersion = 1;

void logLoad(const CString& message, const CString& name)
{
    logLine(message + " // " + name);
}

} // namespace

CError* CAudioParamStorage::save(COutputStream& stream) const
{
    TSM_TRY(saveGroups(stream, 0, groups.getCount()));
    return nullptr;
}

CError* CAudioParamStorage::saveGroup(COutputStream& stream, std::int32_t group) const
{
    TSM_TRY(saveGroups(stream, shape.isSingleGroup ? 0 : group, 1));
    return nullptr;
}

CError* CAudioParamStorage::saveGroups(COutputStream& stream, int first, int count) const
{
    TSM_TRY(stream.writeValue(kVersion));
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(shape.elementSize)));
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(shape.dataType)));
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(count)));
    if (holdsItems())
        TSM_TRY(saveItems(stream, first, count));
    std::uint32_t id = 1;
    for (int group = first; group < first + count; ++group) {
        const int elementCount = getElementCount(group);
        TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(elementCount)));
        for (int i = 0; i < elementCount * shape.elementSize; ++i) {
            if (holdsItems())
                TSM_TRY(stream.writeValue(id++));
            else
                TSM_TRY(stream.writeValue(groups[group].values[i]));
        }
    }
    return nullptr;
}

// The table in the order of the values, so that its ids count up with them.
CError* CAudioParamStorage::saveItems(COutputStream& stream, int first, int count) const
{
    CAudioParamData table;
    for (int group = first; group < first + count; ++group) {
        CAudioParamChange held;
        copyGroup(group, held);
        for (int i = 0; i < held.elementCount; ++i)
            table.add(held.data.take(roundToInt(held.values[i])));
    }
    TSM_TRY(table.save(stream));
    return nullptr;
}

CError* CAudioParamStorage::loadHead(CInputStream& stream) const
{
    std::uint32_t version = 0;
    std::uint32_t elementSize = 0;
    std::uint32_t dataType = 0;
    TSM_TRY(stream.readValue(version));
    if (version != kVersion)
        TSM_FAIL("tsmstr_CAudioParamStorage_load_VersionError Unsupported data set version %1.",
                 toString(version));
    TSM_TRY(stream.readValue(elementSize));
    TSM_TRY(stream.readValue(dataType));
    if (elementSize != static_cast<std::uint32_t>(shape.elementSize) ||
        dataType != static_cast<std::uint32_t>(shape.dataType))
        TSM_FAIL("@tsmstr_CAudioParamStorage_load_FormatError Unsupported storage format "
                 "(esize=%1, dtype=%2; should be: esize=%3, dtype=%4).",
                 toString(elementSize), toString(dataType), toString(shape.elementSize),
                 toString(static_cast<int>(shape.dataType)));
    return nullptr;
}

CError* CAudioParamStorage::load(CInputStream& stream, std::int32_t group, const CString& name,
                                 COwnedArray<CAudioParamChange>& changes) const
{
    std::uint32_t count = 0;
    TSM_TRY(loadHead(stream));
    TSM_TRY(stream.readValue(count));
    CAudioParamData table;
    if (holdsItems())
        TSM_TRY(table.load(stream));

    const std::uint32_t limit = group >= 0 || shape.isSingleGroup ? 1 : kMaxParamGroups;
    const bool fits = count <= limit;
    for (std::uint32_t i = 0; i < count; ++i) {
        CPtr<CAudioParamChange> change(new CAudioParamChange);
        change->group = group >= 0 ? group : static_cast<std::int32_t>(i);
        change->complete = true;
        change->shape = shape;
        TSM_TRY(loadGroup(stream, table, *change));
        if (!fits)
            continue;
        if (shape.isSingleElement && change->elementCount != 1)
            logLoad("Unexpected Element " + toString(change->elementCount) +
                        " (expected 1), param '" + name + "'.",
                    name);
        changes.add(change.release());
    }
    return nullptr;
}

CError* CAudioParamStorage::loadGroup(CInputStream& stream, CAudioParamData& table,
                                      CAudioParamChange& change) const
{
    std::uint32_t count = 0;
    TSM_TRY(stream.readValue(count));
    if (count > static_cast<std::uint32_t>(kMaxParamElements))
        TSM_FAIL("@tsmstr_CAudioParamStorage_load_CountError Invalid element count %1.",
                 toString(count));
    for (int i = 0; i < static_cast<int>(count); ++i)
        TSM_TRY(loadElement(stream, i, table, change));
    change.elementCount = static_cast<std::int32_t>(count);
    return nullptr;
}

CError* CAudioParamStorage::loadElement(CInputStream& stream, int element, CAudioParamData& table,
                                        CAudioParamChange& change) const
{
    if (holdsItems()) {
        std::uint32_t id = 0;
        TSM_TRY(stream.readValue(id));
        // Taken and not copied: an item that damaged data name a thousand times exists once.
        CPtr<CAudioParamDataItem> saved = table.take(roundToInt(id));
        if (!saved || saved->getType() != shape.dataType)
            saved = CAudioParamDataItem::create(shape.dataType);
        change.values.add(change.data.add(std::move(saved)));
        return nullptr;
    }
    for (int e = 0; e < shape.elementSize; ++e) {
        double number = 0.0;
        TSM_TRY(stream.readValue(number));
        change.values.add(std::isfinite(number) ? number : value(kAllParamGroups, element, 0.0, e));
    }
    return nullptr;
}

} // namespace tsm
