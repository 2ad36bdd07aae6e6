#pragma once

#include "Audio/CAudioParamFilter.h"
#include "Core/CObject.h"

namespace tsm {

/// A parameter filter as a document defines it; the class chooses the computation.
class CAudioParamFilterDef : public CObject {
public:
    /// Reads the names. Errors: no sources, no destinations.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

    /// A new filter for a process at `processPath`, to which its names are relative, attached and
    /// with its destinations computed. `process` may be null.
    /// Errors: those of CAudioParamFilter::init. [setup]
    [[nodiscard]] CError* makeFilter(CPtr<CAudioParamFilter>& filter, CAudioProcessBase* process,
                                     CAudioParamCollector& collector,
                                     const CString& processPath) const;

    /// A new filter of this definition's kind, not set up; owned by the caller.
    [[nodiscard]] virtual CAudioParamFilter* createFilter() const = 0;

private:
    COwnedArray<CString> srcNames;
    COwnedArray<CString> dstNames;
};

} // namespace tsm
