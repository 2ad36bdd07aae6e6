#include "rsk/CDSPRealFFTPool.h"

#include "Core/CPtr.h"
#include "Platform/CCriticalSection.h"

#include <cassert>

namespace tsm::rsk {

namespace {

struct CPoolState {
    CCriticalSection lock{1000};
    CPtr<CDSPRealFFT> transforms[kMaxFFTOrder + 1];
};

CPoolState& poolState()
{
    static CPoolState state;
    return state;
}

} // namespace

const CDSPRealFFT& CDSPRealFFTPool::get(int order)
{
    assert(order >= kMinFFTOrder && order <= kMaxFFTOrder);
    CPoolState& state = poolState();
    const CLockScope scope(state.lock);
    CPtr<CDSPRealFFT>& transform = state.transforms[order];
    if (!transform)
        transform.reset(new CDSPRealFFT(order));
    return *transform;
}

} // namespace tsm::rsk
