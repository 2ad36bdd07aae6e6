#pragma once

#include "Core/CCheckedObject.h"

namespace tsm {

class CAudioVizData;

/// Hears what one process has measured, from a CVizDelivery, on its thread.
class CVizListener : public CCheckedObject {
public:
    virtual ~CVizListener() = default;

    /// A record of the process, whose time has come; it ends with the call. [ui]
    virtual void onData(const CAudioVizData& record) = 0;
    /// Nothing has come for a while, or what came is void: the last levels hold no longer. [ui]
    virtual void onInactive() = 0;

protected:
    CVizListener() = default;
    CVizListener(const CVizListener&) = default;
    CVizListener& operator=(const CVizListener&) = default;
};

} // namespace tsm
