#include "Audio/CAudioParamFilterBypassOS.h"

#include "Core/CRounding.h"

namespace tsm {

void CAudioParamFilterBypassOS::apply(CSlots& src, CSlots& dst, const CAudioParamChange& change,
                                      CAudioParamContext& context)
{
    if (change.group != 0 && change.group != kAllParamGroups)
        return;
    const int mode = roundToInt(src[0].values->value(0, 0, 1.0)); // 0 leaves it to the host's
    const int hostMode = roundToInt(src[1].values->value(0, 0, 0.0));
    const bool isBypassed = mode != 0 ? mode == 1 : hostMode == 0;
    writeWhole(dst[0], change.group, isBypassed ? 1.0 : 0.0, context);
}

} // namespace tsm
