#include "Audio/CAudioVizRecords.h"

#include <utility>

namespace tsm {

CAudioVizRecords& CAudioVizRecords::operator=(CAudioVizRecords&& other) noexcept
{
    CAudioVizRecords moved(std::move(other));
    swap(moved);
    return *this;
}

CAudioVizRecords::~CAudioVizRecords()
{
    while (takeFirst()) {
    }
}

void CAudioVizRecords::add(CPtr<CAudioVizData> record) noexcept
{
    CAudioVizData* added = record.release();
    added->next = nullptr;
    (last ? last->next : first) = added;
    last = added;
    ++count;
}

CPtr<CAudioVizData> CAudioVizRecords::takeFirst() noexcept
{
    if (!first)
        return {};
    CPtr<CAudioVizData> taken(first);
    first = std::exchange(taken->next, nullptr);
    if (!first)
        last = nullptr;
    --count;
    return taken;
}

void CAudioVizRecords::swap(CAudioVizRecords& other) noexcept
{
    std::swap(first, other.first);
    std::swap(last, other.last);
    std::swap(count, other.count);
}

} // namespace tsm
