#include "Other/CParamChangeStream.h"

#include "Core/CText.h"
#include "Other/CInterfaceFields.h"

#include <algorithm>
#include <utility>

namespace tsm {

namespace {

bool holdsItems(const CAudioParamChange& change)
{
    return change.shape.dataType != EAudioParamType::Number;
}

CError* writeItems(COutputStream& stream, const CAudioParamChange& change)
{
    CAudioParamData table; // its ids count up from 1
    for (int i = 0; i < change.elementCount; ++i) {
        CPtr<CAudioParamDataItem> item = change.copyItem(i);
        TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(table.add(std::move(item)))));
    }
    TSM_TRY(table.save(stream));
    return nullptr;
}

CError* readItems(CInputStream& stream, CAudioParamChange& change)
{
    CArray<std::int32_t> ids;
    for (int i = 0; i < change.elementCount; ++i) {
        std::int32_t id = 0;
        TSM_TRY(stream.readValue(id));
        ids.add(id);
    }
    CAudioParamData table;
    TSM_TRY(table.load(stream));
    for (const std::int32_t id : ids) {
        // Taken and not copied: an item that damaged data name a thousand times exists once.
        CPtr<CAudioParamDataItem> item = table.take(id);
        if (!item || item->getType() != change.shape.dataType)
            item = CAudioParamDataItem::create(change.shape.dataType);
        change.values.add(change.data.add(std::move(item)));
    }
    return nullptr;
}

CError* readNumbers(CInputStream& stream, CAudioParamChange& change)
{
    constexpr int kAtOnce = 64; // so that a count which the data don't hold costs nothing
    for (int left = change.elementCount * change.shape.elementSize; left > 0;) {
        const int count = std::min(left, kAtOnce);
        const int done = change.values.getCount();
        change.values.resize(done + count);
        TSM_TRY(stream.read(change.values.data() + done, count * static_cast<int>(sizeof(double))));
        left -= count;
    }
    return nullptr;
}

/// Before the values are read; the counts then agree with each other and with the limits.
CError* checkHead(const CAudioParamChange& change)
{
    const auto type = static_cast<std::int32_t>(change.shape.dataType);
    if (type < 0 || type > static_cast<std::int32_t>(EAudioParamType::Raw))
        TSM_FAIL("@tsmstr_readParamChange_TypeError Unknown data type %1 encountered",
                 toString(type));
    const std::int32_t limit = holdsItems(change) ? 1 : kMaxParamElementSize;
    if (change.shape.elementSize < 1 || change.shape.elementSize > limit)
        TSM_FAIL("@tsmstr_readParamChange_InvalidElementSize Invalid element size %1 specified.",
                 toString(change.shape.elementSize));
    if (change.group != kAllParamGroups && (change.group < 0 || change.group >= kMaxParamGroups))
        TSM_FAIL("@tsmstr_readParamChange_InvalidGroup Invalid group %1 specified.",
                 toString(change.group));
    if (change.firstElement < 0 || change.firstElement > kMaxParamElements ||
        change.elementCount < 0 || change.elementCount > kMaxParamElements - change.firstElement)
        TSM_FAIL("@tsmstr_readParamChange_InvalidElements Invalid elements specified (%1 from %2).",
                 toString(change.elementCount), toString(change.firstElement));
    return nullptr;
}

} // namespace

CError* writeParamChange(COutputStream& stream, const CAudioParamChange& change)
{
    TSM_TRY(writeFields(stream, change.group, change.firstElement, change.elementCount,
                        change.complete, change.shape.elementSize,
                        static_cast<std::int32_t>(change.shape.dataType),
                        change.shape.isSingleGroup, change.shape.isSingleElement));
    if (holdsItems(change))
        TSM_TRY(writeItems(stream, change));
    else
        TSM_TRY(stream.write(change.values.data(),
                             change.values.getCount() * static_cast<int>(sizeof(double))));
    return nullptr;
}

CError* readParamChange(CInputStream& stream, CAudioParamChange& change)
{
    std::int32_t dataType = 0;
    TSM_TRY(readFields(stream, change.group, change.firstElement, change.elementCount,
                       change.complete, change.shape.elementSize, dataType,
                       change.shape.isSingleGroup, change.shape.isSingleElement));
    change.shape.dataType = static_cast<EAudioParamType>(dataType);
    TSM_TRY(checkHead(change));
    TSM_TRY(holdsItems(change) ? readItems(stream, change) : readNumbers(stream, change));
    return nullptr;
}

} // namespace tsm
