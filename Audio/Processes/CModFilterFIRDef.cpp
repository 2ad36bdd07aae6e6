#include "Audio/Processes/CModFilterFIRDef.h"

#include "Audio/Processes/CModFilterFIR.h"

namespace tsm {

CError* CModFilterFIRDef::init()
{
    TSM_TRY(CAudioProcessDefBase::init());
    isZeroLatency = getAttrBool("is-zero-latency");
    return nullptr;
}

CAudioProcessBase* CModFilterFIRDef::createInstance() const
{
    return new CModFilterFIR;
}

} // namespace tsm
