#pragma once

#include "Core/CCheckedObject.h"

#include <cstdint>

namespace tsm {

/// The way from a host parameter to the host; a plug-in format's wrapper implements it. Indexes are
/// those of the list of host parameters.
class CAudioExtParamHostBridge : public CCheckedObject {
public:
    virtual ~CAudioExtParamHostBridge() = default;

    /// Tells the host a parameter's new normalized value. [any] With no lock of ours held.
    virtual void performEdit(std::int32_t index, double value) = 0;
    /// The current program, or its name, is another one. [control]
    virtual void onProgramChange() = 0;
    /// A gesture on a parameter begins; its edits follow until endEdit(). [ui]
    virtual void beginEdit(std::int32_t index) = 0;
    virtual void endEdit(std::int32_t index) = 0;

protected:
    CAudioExtParamHostBridge() = default;
    CAudioExtParamHostBridge(const CAudioExtParamHostBridge&) = default;
    CAudioExtParamHostBridge& operator=(const CAudioExtParamHostBridge&) = default;
};

} // namespace tsm
