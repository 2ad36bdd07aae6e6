#include "Audio/CAudioParamUndoHistory.h"

namespace tsm {

CAudioParamUndoHistory::CAudioParamUndoHistory(const CAudioParamUndoHistory& other)
    : CCheckedObject(), CTsmMemAllocator(), position(other.position)
{
    for (const CAudioParamUndoData& step : other.records)
        records.add(new CAudioParamUndoData(step));
}

bool CAudioParamUndoHistory::add(CPtr<CAudioParamUndoData> step, int maxCount)
{
    if (position > 0 && records[position - 1].merge(*step))
        return false;
    while (records.getCount() > position)
        records.remove(position);
    if (records.getCount() >= maxCount)
        records.remove(0);
    records.add(step.release());
    position = records.getCount();
    return true;
}

} // namespace tsm
