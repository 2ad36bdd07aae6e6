#include "Core/CTimerQueued.h"

#include "Core/CText.h"
#include "Platform/CClock.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tsm {
namespace {

constexpr double kShortestSeconds = 0.001;
constexpr double kSlowestFps = 0.001;
constexpr double kFastestFps = 1000.0;
constexpr double kAnswerLimitSeconds = 2.0;

double secondsBetween(std::int64_t begin, std::int64_t end)
{
    return static_cast<double>(end - begin) / static_cast<double>(CClock::frequency());
}

/// Whole intervals in a time, as far as 32 bits hold them.
std::int32_t wholeIntervals(double seconds, double interval)
{
    constexpr double kMost = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(std::floor(seconds / interval), kMost));
}

} // namespace

/// A tick whose listeners run. A listener may run a message loop, so that ticks nest.
struct CTimerQueued::CTick {
    explicit CTick(CTimerQueued& timer) : owner(&timer), outer(timer.innermostTick)
    {
        timer.innermostTick = this;
    }
    ~CTick()
    {
        if (owner)
            owner->innermostTick = outer;
    }
    CTick(const CTick&) = delete;
    CTick& operator=(const CTick&) = delete;

    CTimerQueued* owner; // null once a listener has ended the timer
    CTick* outer;
};

CTimerQueued::CTimerQueued() : lastPostTime(CClock::counter()), queueTimer(&onQueueTick, this) {}

CTimerQueued::~CTimerQueued()
{
    stopTimer();
    for (CTick* tick = innermostTick; tick; tick = tick->outer)
        tick->owner = nullptr;
}

void CTimerQueued::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
    info.addAttr("fps", &CTimerQueued::onFps);
    info.addAttr("interval", &CTimerQueued::onInterval);
    info.addAttr("is-high-precision", &CTimerQueued::onIsHighPrecision);
    info.addEvent("sys-tick", &CTimerQueued::onSysTick);
}

CError* CTimerQueued::onFps(CAttrValue& value)
{
    // The order of the arguments makes NaN the slowest rate.
    const double fps = std::min(std::max(kSlowestFps, value.asDouble()), kFastestFps);
    TSM_TRY(setInterval(1.0 / fps));
    return nullptr;
}

CError* CTimerQueued::onInterval(CAttrValue& value)
{
    TSM_TRY(setInterval(std::max(kShortestSeconds, value.asDouble())));
    return nullptr;
}

CError* CTimerQueued::onIsHighPrecision(CAttrValue& value)
{
    if (value.asBool() == isHighPrecision)
        return nullptr;
    isHighPrecision = value.asBool();
    TSM_TRY(initTimer());
    return nullptr;
}

CError* CTimerQueued::setInterval(double seconds)
{
    if (std::abs(seconds - interval) <= std::numeric_limits<double>::epsilon())
        return nullptr;
    interval = seconds;
    TSM_TRY(initTimer());
    return nullptr;
}

void CTimerQueued::stopTimer()
{
    messageTimer.reset();
    queueTimer.stop();
    isActive = false;
}

CError* CTimerQueued::initTimer()
{
    stopTimer();
    if (interval <= 0.0)
        return nullptr;
    constexpr double kLongestMs = std::numeric_limits<std::int32_t>::max();
    const auto periodMs =
        static_cast<std::int64_t>(std::min(std::round(interval * 1000.0), kLongestMs));
    TSM_TRY(isHighPrecision ? startQueued(periodMs) : startMessages(periodMs));
    isActive = true;
    return nullptr;
}

CError* CTimerQueued::startQueued(std::int64_t periodMs)
{
    if (!CSystemTimer::hasQueue())
        TSM_FAIL("@tsmstr_CTimerQueued_initTimer_createTimerQueue Timer queue creation error.");
    {
        const CLockScope scope(lock);
        tickDone = true;
        skipCount = 0;
    }
    delivery.prepare(*this, "sys-tick");
    if (const int code = queueTimer.start(0, periodMs))
        TSM_FAIL("@tsmstr_CTimerQueued_initTimer_createTimer Timer creation error %1.",
                 toString(code));
    return nullptr;
}

CError* CTimerQueued::startMessages(std::int64_t periodMs)
{
    messageTimer.reset(new CMessageTimer(&onMessageTick, this));
    if (const int code = messageTimer->start(periodMs)) {
        messageTimer.reset();
        TSM_FAIL("@tsmstr_CTimerQueued_initTimer_createTimerHWND Timer creation error %1.",
                 toString(code));
    }
    return nullptr;
}

/// Tells whether a tick may be sent now, and notes it if so. [timer thread]
bool CTimerQueued::takeTick()
{
    const std::int64_t now = CClock::counter();
    const CLockScope scope(lock);
    if (!tickDone && secondsBetween(lastPostTime, now) < kAnswerLimitSeconds)
        return false;
    if (skipCount >= 1) {
        --skipCount;
        return false;
    }
    tickDone = false;
    lastPostTime = now;
    return true;
}

void CTimerQueued::onQueueTick(void* self)
{
    auto* timer = static_cast<CTimerQueued*>(self);
    if (timer->takeTick())
        handleError(timer->delivery.post());
}

void CTimerQueued::onMessageTick(void* self)
{
    // Forced through the bridge: no listener may end the timer while the queue calls it.
    handleError(static_cast<CTimerQueued*>(self)->sendEvent("tick", true));
}

CError* CTimerQueued::onSysTick()
{
    // On its way when the timer was switched over, which goes on by itself.
    if (messageTimer)
        return nullptr;
    const std::int64_t begin = CClock::counter();
    const CTick tick(*this);
    CError* error = sendEvent("tick", false);
    if (!tick.owner)
        return error; // nothing of this object may be touched
    const double seconds = secondsBetween(begin, CClock::counter());
    {
        const CLockScope scope(lock);
        tickDone = true;
        skipCount = interval > 0.0 ? wholeIntervals(seconds, interval) : 0;
    }
    TSM_TRY(error);
    return nullptr;
}

} // namespace tsm
