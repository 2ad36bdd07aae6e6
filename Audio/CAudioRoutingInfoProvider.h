#pragma once

#include "Core/CCheckedObject.h"

namespace tsm {

struct CAudioParamContext;

/// Adapts routing parameters to the host's format, for those who have just written other ones.
class CAudioRoutingInfoProvider : public CCheckedObject {
public:
    virtual ~CAudioRoutingInfoProvider() = default;

    /// Rewrites the routing parameters for the host's present format, unless a user has touched
    /// them or no format is known yet. With a `context` the changes join its transaction.
    /// [control]
    virtual void updateRouting(CAudioParamContext* context) = 0;

protected:
    CAudioRoutingInfoProvider() = default;
    CAudioRoutingInfoProvider(const CAudioRoutingInfoProvider&) = default;
    CAudioRoutingInfoProvider& operator=(const CAudioRoutingInfoProvider&) = default;
};

} // namespace tsm
