#include "Tools/rtaudit/CRealtimePriority.h"

#include <pthread.h>
#include <sched.h>

namespace tsm {
namespace {

bool setPolicy(int policy) noexcept
{
    sched_param param{};
    param.sched_priority = sched_get_priority_min(policy);
    return pthread_setschedparam(pthread_self(), policy, &param) == 0;
}

} // namespace

CRealtimePriority::CRealtimePriority() noexcept : granted(setPolicy(SCHED_FIFO)) {}

CRealtimePriority::~CRealtimePriority()
{
    if (granted)
        (void)setPolicy(SCHED_OTHER); // which needs no right
}

} // namespace tsm
