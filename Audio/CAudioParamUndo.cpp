#include "Audio/CAudioParamUndo.h"

#include "Audio/CAudioParamCollector.h"

#include <utility>

namespace tsm {

namespace {

constexpr std::int32_t kLeastCount = 4;
constexpr const char* kStartTitle = "Undo history start";

} // namespace

CError* CAudioParamUndo::init()
{
    TSM_TRY(CObject::init());
    TSM_TRY(findObjectByAttr(collector, "param-collector"));
    const std::int32_t wanted = getAttrInt("undo-count-max");
    maxCount = wanted <= kLeastCount ? kLeastCount : wanted;
    return nullptr;
}

void CAudioParamUndo::commit(CPtr<CAudioParamUndoData> step)
{
    if (step->isEmpty())
        return;
    {
        const CLockScope hold(lock);
        if (!history)
            history.reset(new CAudioParamUndoHistory);
        if (!history->add(std::move(step), maxCount))
            return;
    }
    onHistoryChanged();
}

void CAudioParamUndo::getHistory(COwnedArray<CString>& names, std::int32_t& position) const
{
    const CLockScope hold(lock);
    names.clear();
    names.create() = kStartTitle;
    position = history ? history->position : 0;
    for (int i = 0; history && i < history->records.getCount(); ++i)
        names.create() = history->records[i].name;
}

void CAudioParamUndo::setPosition(std::int32_t newPosition, bool notify)
{
    // Listeners and the host hear of it behind the lock.
    const CAudioParamHold updates(*collector.get());
    {
        const CLockScope hold(lock);
        if (!history || newPosition < 0 || newPosition > history->records.getCount() ||
            newPosition == history->position)
            return;
        std::int32_t& position = history->position;
        while (position < newPosition)
            history->records[position++].apply(*collector.get(), true);
        while (position > newPosition)
            history->records[--position].apply(*collector.get(), false);
    }
    if (notify)
        onHistoryChanged();
}

void CAudioParamUndo::exchangeHistory(CPtr<CAudioParamUndoHistory>& out,
                                      CPtr<CAudioParamUndoHistory>& in)
{
    {
        const CLockScope hold(lock);
        CPtr<CAudioParamUndoHistory> next(in.release());
        out.reset(history.release());
        history = std::move(next);
    }
    onHistoryChanged();
}

void CAudioParamUndo::cloneHistory(CPtr<CAudioParamUndoHistory>& out) const
{
    const CLockScope hold(lock);
    out.reset(history ? new CAudioParamUndoHistory(*history) : nullptr);
}

} // namespace tsm
