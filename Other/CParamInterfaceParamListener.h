#pragma once

#include "Audio/CAudioParamChange.h"

namespace tsm {

/// Hears, at the client's end of the parameter interface, of one parameter. It leaves the client
/// before it goes. Called on the client's thread.
class CParamInterfaceParamListener : public CCheckedObject {
public:
    virtual ~CParamInterfaceParamListener() = default;

    /// Reads a u32 flag and, if it is set, the parameter's description
    /// (CAudioParamInfo::load), and no more; without it the parameter isn't described yet. Comes
    /// first, and again with each change of all groups. Errors: those of the data. [ui]
    [[nodiscard]] virtual CError* onInfo(CInputStream& stream) = 0;
    /// A change, which the listener may use up. [ui]
    virtual void onChange(CAudioParamChange& change) = 0;

protected:
    CParamInterfaceParamListener() = default;
    CParamInterfaceParamListener(const CParamInterfaceParamListener&) = default;
    CParamInterfaceParamListener& operator=(const CParamInterfaceParamListener&) = default;
};

} // namespace tsm
