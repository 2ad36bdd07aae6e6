#include "Audio/CAudioParamFilterBypassGroupSolo.h"

namespace tsm {

void CAudioParamFilterBypassGroupSolo::apply(CSlots& src, CSlots& dst, const CAudioParamChange&,
                                             CAudioParamContext& context)
{
    bool isSoloed = false;
    const CAudioParamStorage& solo = *src[0].values;
    for (int group = 0; group < solo.getGroupCount() && !isSoloed; ++group)
        isSoloed = solo.getElementCount(group) > 0 && solo.value(group, 0) >= 0.5;
    writeWhole(dst[0], 0, isSoloed ? 0.0 : 1.0, context);
}

} // namespace tsm
