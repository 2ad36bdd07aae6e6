#pragma once

#include "Audio/CAudioExtParamHostBridge.h"
#include "Core/CMemory.h"

namespace tsm {

/// A host parameter's value that the host is to be told.
class CPendingHostUpdate : public CCheckedObject, public CTsmMemAllocator {
public:
    /// `target` outlives the update.
    CPendingHostUpdate(CAudioExtParamHostBridge& target, std::int32_t paramIndex,
                       double normalized) noexcept
        : bridge(target), index(paramIndex), value(normalized)
    {
    }
    CPendingHostUpdate(const CPendingHostUpdate&) = delete;
    CPendingHostUpdate& operator=(const CPendingHostUpdate&) = delete;
    [[nodiscard]] bool isFor(const CAudioExtParamHostBridge& target,
                             std::int32_t paramIndex) const noexcept
    {
        return &bridge == &target && index == paramIndex;
    }
    void deliver() { bridge.performEdit(index, value); }

    CPendingHostUpdate* next = nullptr;
    std::uint32_t threadId = 0; // who made the change, and tells it

private:
    CAudioExtParamHostBridge& bridge;
    std::int32_t index;
    double value;
};

} // namespace tsm
