#pragma once

#include "Core/CBridgedDelivery.h"
#include "Core/CObject.h"
#include "Platform/CCriticalSection.h"
#include "Platform/CMessageTimer.h"
#include "Platform/CSystemTimer.h"

#include <cstdint>

namespace tsm {

/// Emits the event "tick" periodically, on the thread of the nearest event bridge above it; below
/// none it doesn't tick. It needs a period to begin with. Tag `core:timer`.
///
/// The timer thread only posts, and a slow listener isn't flooded: while a tick is under way no
/// other one is sent (unless there is no answer for two seconds), and for each whole interval that
/// a tick took, one of the following ones falls away. The message timer posts through the thread's
/// message queue, which keeps at most one tick.
class CTimerQueued : public CObject {
public:
    CTimerQueued();
    /// Stops the timer. A listener of "tick" may end its timer.
    ~CTimerQueued() override;
    static void declareClass(CObjectClassInfo& info);

    /// Attribute "fps": ticks a second, 0.001 to 1000. Errors: the system gave no timer.
    [[nodiscard]] virtual CError* onFps(CAttrValue& value);
    /// Attribute "interval": seconds between ticks, at least 0.001. Errors: as above.
    [[nodiscard]] virtual CError* onInterval(CAttrValue& value);
    /// Attribute "is-high-precision": the timer thread (true, as made) or the message timer.
    /// Errors: as above.
    [[nodiscard]] virtual CError* onIsHighPrecision(CAttrValue& value);
    /// Event "sys-tick", posted by the timer thread: sends "tick" and takes its time.
    [[nodiscard]] virtual CError* onSysTick();

    /// Seconds between ticks; 0 until a period was set.
    [[nodiscard]] double getInterval() const noexcept { return interval; }
    [[nodiscard]] bool getIsActive() const noexcept { return isActive; }

private:
    struct CTick;

    [[nodiscard]] CError* setInterval(double seconds);
    [[nodiscard]] CError* initTimer();
    [[nodiscard]] CError* startQueued(std::int64_t periodMs);
    [[nodiscard]] CError* startMessages(std::int64_t periodMs);
    void stopTimer();
    [[nodiscard]] bool takeTick();
    static void onQueueTick(void* self);
    static void onMessageTick(void* self);

    double interval = 0.0;
    bool isActive = false;
    bool isHighPrecision = true;
    CTick* innermostTick = nullptr; // of those that are running; they end with the object
    CBridgedDelivery delivery;

    CCriticalSection lock{50}; // for the three below; not held while posting or sending
    bool tickDone = true;
    std::int64_t lastPostTime;
    std::int32_t skipCount = 0;

    CPtr<CMessageTimer> messageTimer;
    CSystemTimer queueTimer; // last: it ends before what its callback uses
};

} // namespace tsm
