#pragma once

#include "Audio/CAudioVizRecords.h"
#include "Core/CString.h"

#include <cstdint>

namespace tsm {

class CAudioParam;
class CAudioVizCollector;

/// A process that can be watched, by its full name. Made by its collector, which it lives as long
/// as.
class CAudioVizSource : public CCheckedObject, public CTsmMemAllocator {
public:
    CAudioVizSource(CAudioVizCollector& owner, const CString& processName,
                    CAudioParam& enableParam) noexcept
        : collector(owner), name(processName), enable(enableParam)
    {
    }
    CAudioVizSource(const CAudioVizSource&) = delete;
    CAudioVizSource& operator=(const CAudioVizSource&) = delete;

    [[nodiscard]] CAudioVizCollector& getCollector() const noexcept { return collector; }
    [[nodiscard]] const CString& getName() const noexcept { return name; }
    /// Those who watch, as far as the audio thread has heard. [audio]
    [[nodiscard]] std::int32_t getListenerCount() const noexcept { return listeners; }

private:
    friend class CAudioVizCollector;

    CAudioVizCollector& collector;
    CString name;
    CAudioParam& enable; // 1.0 while there are listeners
    std::int32_t listeners = 0;
    // Guarded by the environment's lock.
    CAudioVizSource* nextPending = nullptr;
    std::int32_t pendingDelta = 0;
    bool isPending = false;
    // The audio thread's.
    CAudioVizSource* nextTaken = nullptr;
    std::int32_t takenDelta = 0;
    CAudioVizRecords records; // guarded by the collector's queue lock
};

} // namespace tsm
