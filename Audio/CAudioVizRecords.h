#pragma once

#include "Audio/CAudioVizData.h"
#include "Core/CPtr.h"

namespace tsm {

/// Records in the order of their making, which it owns. The links lie in the records, so that
/// adding and taking need no memory.
class CAudioVizRecords : public CCheckedObject {
public:
    CAudioVizRecords() = default;
    CAudioVizRecords(CAudioVizRecords&& other) noexcept { swap(other); }
    CAudioVizRecords& operator=(CAudioVizRecords&& other) noexcept;
    CAudioVizRecords(const CAudioVizRecords&) = delete;
    CAudioVizRecords& operator=(const CAudioVizRecords&) = delete;
    ~CAudioVizRecords();

    [[nodiscard]] int getCount() const noexcept { return count; }
    void add(CPtr<CAudioVizData> record) noexcept;
    /// The oldest record, now the caller's; null when there is none.
    [[nodiscard]] CPtr<CAudioVizData> takeFirst() noexcept;
    void swap(CAudioVizRecords& other) noexcept;

private:
    CAudioVizData* first = nullptr;
    CAudioVizData* last = nullptr;
    int count = 0;
};

} // namespace tsm
