#include "Platform/CMessageTimer.h"

namespace tsm {

CMessageTimer::CMessageTimer(CCallback newCallback, void* newContext)
    : callback(newCallback), context(newContext), timer(&postTick, this)
{
}

CMessageTimer::~CMessageTimer() = default;

int CMessageTimer::start(std::int64_t periodMs)
{
    return timer.start(periodMs, periodMs);
}

void CMessageTimer::postTick(void* self)
{
    auto* timer = static_cast<CMessageTimer*>(self);
    if (timer->isTickPosted.exchange(true))
        return;
    // A queue that refuses, since its thread ends or memory is short, may take the next tick.
    if (timer->post(0, 0) != 0)
        timer->isTickPosted.store(false);
}

void CMessageTimer::onMessage(int, std::int64_t)
{
    isTickPosted.store(false);
    callback(context); // the object may be gone from here on
}

} // namespace tsm
