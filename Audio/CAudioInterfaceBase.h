#pragma once

#include "Audio/CAudioInterfaceDataProvider.h"
#include "Audio/CAudioParamUndo.h"

namespace tsm {

/// The instance's side of what its windows see and change: the history of edits, and what the host
/// says. Tag `audio:interface-base`.
class CAudioInterfaceBase : public CAudioParamUndo {
public:
    static void declareClass(CObjectClassInfo& info) { CAudioParamUndo::declareClass(info); }

    /// Names who answers questions about the host; borrowed, null for none. [setup]
    void setDataProvider(CAudioInterfaceDataProvider* newProvider) noexcept
    {
        provider = newProvider;
    }
    [[nodiscard]] CAudioInterfaceDataProvider* getDataProvider() const noexcept { return provider; }

private:
    CAudioInterfaceDataProvider* provider = nullptr;
};

} // namespace tsm
