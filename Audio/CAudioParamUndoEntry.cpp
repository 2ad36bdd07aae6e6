#include "Audio/CAudioParamUndoEntry.h"

namespace tsm {

CAudioParamUndoEntry::CAudioParamUndoEntry(const CAudioParamUndoEntry& other)
    : CCheckedObject(), CTsmMemAllocator()
{
    for (const CAudioParamUndoItem& item : other.items)
        items.add(new CAudioParamUndoItem(item));
}

CAudioParamUndoItem* CAudioParamUndoEntry::find(std::int32_t group) noexcept
{
    for (CAudioParamUndoItem& item : items)
        if (item.group == group)
            return &item;
    return nullptr;
}

} // namespace tsm
