#include "Audio/Processes/CModLatencyUniformerDef.h"

#include "Audio/Processes/CModLatencyUniformer.h"

namespace tsm {

CError* CModLatencyUniformerDef::init()
{
    TSM_TRY(CAudioProcessDefBase::init());
    readLatencies(getAttrString("latencies"));
    return nullptr;
}

CAudioProcessBase* CModLatencyUniformerDef::createInstance() const
{
    return new CModLatencyUniformer;
}

} // namespace tsm
