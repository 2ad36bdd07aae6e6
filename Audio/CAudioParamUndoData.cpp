#include "Audio/CAudioParamUndoData.h"

#include "Audio/CAudioParamCollector.h"

#include <utility>

namespace tsm {

namespace {

constexpr std::int32_t kEditGroups = 256; // a gesture's key is element * 256 + group

} // namespace

CAudioParamUndoData::CAudioParamUndoData(const CAudioParamUndoData& other)
    : CAudioParamUndoRecorder(), CTsmMemAllocator(), name(other.name),
      isMergeable(other.isMergeable), mergeId(other.mergeId)
{
    for (const auto& entry : other.params)
        params[entry.key] = new CAudioParamUndoEntry(*entry.value);
}

CAudioParamUndoData::~CAudioParamUndoData()
{
    for (const auto& entry : params)
        delete entry.value;
}

void CAudioParamUndoData::recordBefore(const CString& paramName, std::int32_t group,
                                       const CAudioParamStorage& storage, bool asEmpty)
{
    CAudioParamUndoEntry*& entry = params[paramName];
    if (!entry)
        entry = new CAudioParamUndoEntry;
    if (!entry->find(group))
        entry->items.create().takeBefore(group, storage, asEmpty);
}

void CAudioParamUndoData::recordAfter(const CString& paramName, std::int32_t group,
                                      const CAudioParamStorage& storage, bool asEmpty)
{
    CAudioParamUndoEntry* const entry = params.get(paramName, nullptr);
    CAudioParamUndoItem* const item = entry ? entry->find(group) : nullptr;
    if (item)
        item->takeAfter(storage, asEmpty);
}

void CAudioParamUndoData::beginEdits(CAudioParam& param, const CAudioParamChange& change,
                                     CArray<CAudioParamEdit>& begun)
{
    const std::int32_t group = change.group == kAllParamGroups ? 0 : change.group;
    CAudioParamUndoEntry*& entry = params[param.getName()];
    if (!entry)
        entry = new CAudioParamUndoEntry;
    for (int i = 0; i < change.elementCount; ++i) {
        const std::int32_t element = change.firstElement + i;
        CAudioParam*& edited =
            entry->editedElements[static_cast<std::uint32_t>(element * kEditGroups + group)];
        if (!edited)
            begun.add({&param, group, element});
        edited = &param;
    }
}

void CAudioParamUndoData::takeEdits(CArray<CAudioParamEdit>& edits)
{
    for (auto* entry = params.first(); entry;) {
        auto* const next = params.next(entry);
        for (const auto& edit : entry->value->editedElements) {
            const auto place = static_cast<std::int32_t>(edit.key);
            edits.add({edit.value, place % kEditGroups, place / kEditGroups});
        }
        entry->value->editedElements.clear();
        if (entry->value->items.isEmpty()) {
            delete entry->value;
            params.removeNode(entry);
        }
        entry = next;
    }
}

bool CAudioParamUndoData::isEmpty() const noexcept
{
    for (const auto& entry : params)
        if (!entry.value->items.isEmpty())
            return false;
    return true;
}

bool CAudioParamUndoData::canMerge(const CAudioParamUndoData& newer) const
{
    if (!isMergeable || !newer.isMergeable || mergeId != newer.mergeId ||
        params.getCount() != newer.params.getCount())
        return false;
    for (const auto& entry : params) {
        const CAudioParamUndoEntry* const other = newer.params.get(entry.key, nullptr);
        if (!other || other->items.getCount() != entry.value->items.getCount())
            return false;
        for (int i = 0; i < other->items.getCount(); ++i)
            if (!entry.value->items[i].isLike(other->items[i]))
                return false;
    }
    return true;
}

bool CAudioParamUndoData::merge(CAudioParamUndoData& newer)
{
    if (!canMerge(newer))
        return false;
    for (const auto& entry : params) {
        CAudioParamUndoEntry& other = *newer.params.get(entry.key, nullptr);
        for (int i = 0; i < other.items.getCount(); ++i)
            entry.value->items[i].redo = std::move(other.items[i].redo);
    }
    return true;
}

void CAudioParamUndoData::apply(CAudioParamCollector& collector, bool isRedo) const
{
    CAudioParamBatch batch;
    CAudioParamContext context;
    context.batch = &batch;
    for (const auto& entry : params) {
        CAudioParam& param = collector.findOrCreate(entry.key);
        for (const CAudioParamUndoItem& item : entry.value->items) {
            CAudioParamChange change(isRedo ? item.redo : item.undo);
            param.applyChange(change, this, &context);
        }
    }
    collector.queueBatch(batch);
}

} // namespace tsm
