#pragma once

#include "Core/CAttrValue.h"

namespace tsm {

/// Carries event parameters to the thread that an object's listeners run on.
class CObjectEventBridge : public CCheckedObject {
public:
    virtual ~CObjectEventBridge() = default;

    /// Takes a copy of `params` for delivery on a later turn of the receiving thread's loop. [any]
    [[nodiscard]] virtual CError* post(const CAttrMap& params) = 0;
};

} // namespace tsm
