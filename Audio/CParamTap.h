#pragma once

#include "Core/CCheckedObject.h"

namespace tsm {

class CAudioParam;
struct CAudioParamChange;

/// Is told of each change of a parameter while it is made: on its thread, under the parameter's
/// lock, also on the audio thread. What it does is short; it sets no parameter and calls no host.
class CParamTap : public CCheckedObject {
public:
    virtual ~CParamTap() = default;
    /// The values are the new ones. `source` is what the one who made the change named as itself.
    virtual void onChangeMade(const void* source, const CAudioParam& param,
                              const CAudioParamChange& change) = 0;

protected:
    CParamTap() = default;
    CParamTap(const CParamTap&) = default;
    CParamTap& operator=(const CParamTap&) = default;
};

} // namespace tsm
