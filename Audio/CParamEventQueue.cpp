#include "Audio/CParamEventQueue.h"

namespace tsm {

void CParamEventQueue::add(const CParamEvent& event) noexcept
{
    if (events.getCount() == events.getCapacity()) {
        overwriteLast(event);
        return;
    }
    // Hosts queue nearly in order, so the place is found within a few steps from the end.
    int place = events.getCount();
    while (place > readIndex && events[place - 1].offset > event.offset)
        --place;
    events.insert(place, event);
}

void CParamEventQueue::overwriteLast(const CParamEvent& event) noexcept
{
    for (int i = events.getCount() - 1; i >= readIndex; --i) {
        CParamEvent& queued = events[i];
        if (queued.kind == event.kind && queued.index == event.index &&
            event.kind == CParamEvent::kParamChange) {
            queued.value = event.value;
            return;
        }
    }
}

void CParamEventQueue::clear() noexcept
{
    events.clear();
    readIndex = 0;
}

} // namespace tsm
