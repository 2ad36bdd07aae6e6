#pragma once

#include "Audio/CAudioParamChange.h"
#include "Core/CUpdateNotifier.h"

namespace tsm {

class CAudioParam;

/// Tells of one change; the message behind CParamListener.
struct CParamUpdateMessage : CUpdateMessage {
    CAudioParam* param = nullptr;
    const CAudioParamChange* change = nullptr;
};

/// Hears of the changes of one parameter, which it joins by CAudioParam::addListener and leaves by
/// `attach(nullptr)`.
class CParamListener : public CUpdateListener {
public:
    /// A change was made. `source` is what the one who made it named as itself, so that a listener
    /// can skip its own. Changes arrive in the order in which they were made, on the thread of a
    /// change (CParamUpdateQueue), never the engine's, with no lock of a parameter held: parameters
    /// may be set here. By then the transaction is over, and later changes may have been made:
    /// values are read anew, or taken from `change`.
    virtual void onParamChanged(const void* source, CAudioParam& param,
                                const CAudioParamChange& change) = 0;

    void onUpdate(const CUpdateMessage& message) final;
};

} // namespace tsm
