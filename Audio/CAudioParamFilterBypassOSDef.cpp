#include "Audio/CAudioParamFilterBypassOSDef.h"

#include "Audio/CAudioParamFilterBypassOS.h"

namespace tsm {

CAudioParamFilter* CAudioParamFilterBypassOSDef::createFilter() const
{
    return new CAudioParamFilterBypassOS;
}

void CAudioParamFilterBypassOSDef::declareClass(CObjectClassInfo& info)
{
    CAudioParamFilterDef::declareClass(info);
}

} // namespace tsm
