#include "Audio/CAudioParamFilterBypassGroupSoloDef.h"

#include "Audio/CAudioParamFilterBypassGroupSolo.h"

namespace tsm {

CAudioParamFilter* CAudioParamFilterBypassGroupSoloDef::createFilter() const
{
    return new CAudioParamFilterBypassGroupSolo;
}

void CAudioParamFilterBypassGroupSoloDef::declareClass(CObjectClassInfo& info)
{
    CAudioParamFilterDef::declareClass(info);
}

} // namespace tsm
