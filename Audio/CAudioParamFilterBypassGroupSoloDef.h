#pragma once

#include "Audio/CAudioParamFilterDef.h"

namespace tsm {

/// Makes filters of the class CAudioParamFilterBypassGroupSolo.
class CAudioParamFilterBypassGroupSoloDef : public CAudioParamFilterDef {
public:
    [[nodiscard]] CAudioParamFilter* createFilter() const override;
    static void declareClass(CObjectClassInfo& info);
};

} // namespace tsm
