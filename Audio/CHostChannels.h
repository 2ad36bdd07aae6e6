#pragma once

#include "Audio/CRoutingUpdate.h"
#include "Platform/CCriticalSection.h"

namespace tsm {

class CAudioInterfaceBase;

/// The names of the host's channels and what an instance makes of them: the routing parameters
/// follow them, and a user may take them over as labels. Control and window meet here, under a
/// lock of its own.
class CHostChannels : public CCheckedObject {
public:
    /// `bound` is borrowed. [setup]
    explicit CHostChannels(const CWrapperParams& bound) noexcept : params(bound) {}

    /// For the update that follows. [control]
    void setNames(CHostChannelNames&& names);
    /// As the routing update's run(). [control]
    void updateRouting(bool force, int intChannelCount, const void* source,
                       CAudioParamContext* context);
    /// Writes the labels, or the host's own names when there are none, in an undo step of
    /// `interfaceBase`. Labels that stand already make no step. [ui]
    void importLabels(const COwnedArray<CString>& labels, CAudioInterfaceBase* interfaceBase,
                      const void* source);

private:
    void listNames(COwnedArray<CString>& names);

    const CWrapperParams& params;
    CCriticalSection lock{4000};
    CRoutingUpdate routing{params};
};

} // namespace tsm
