#include "Audio/VST/FObject.h"

namespace Steinberg {

tresult FObject::queryInterface(const TUID wanted, void** obj)
{
    if (!obj)
        return kInvalidArgument;
    // Always the same base of FUnknown: hosts compare these addresses to tell objects apart.
    if (giveInterface<FUnknown>(wanted, obj, this))
        return kResultOk;
    *obj = nullptr;
    return kNoInterface;
}

uint32 FObject::addRef()
{
    return refCount.fetch_add(1, std::memory_order_relaxed) + 1;
}

uint32 FObject::release()
{
    const uint32 left = refCount.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left > 0)
        return left;
    // While it is torn down the object may be lent out once more; that must not end it again.
    constexpr uint32 kDying = 1U << 30;
    refCount.store(kDying, std::memory_order_relaxed);
    delete this;
    return 0;
}

} // namespace Steinberg
