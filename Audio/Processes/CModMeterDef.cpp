#include "Audio/Processes/CModMeterDef.h"

#include "Audio/Processes/CModMeter.h"

namespace tsm {

CError* CModMeterDef::init()
{
    TSM_TRY(CAudioProcessDefBase::init());
    if (const CAttrValue* value = getAttr("fps"))
        if (!value->toDouble(fps) || !(fps > 0.0))
            fps = 0.0;
    isDiff = getAttrBool("is-diff");
    isCompression = getAttrBool("is-compression");
    isInverted = getAttrBool("is-inverted");
    return nullptr;
}

CAudioProcessBase* CModMeterDef::createInstance() const
{
    return new CModMeter;
}

} // namespace tsm
