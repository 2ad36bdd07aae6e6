#include "Audio/Processes/CModBankedConvolverDef.h"

#include "Audio/Processes/CModBankedConvolver.h"
#include "Core/CText.h"

namespace tsm {

CError* CModBankedConvolverDef::init()
{
    TSM_TRY(CAudioProcessDefBase::init());
    fileSetName = getAttrString("fileset");
    statusParam = getAttrString("status-param");
    double seconds = 0.0;
    if (parseDouble(getAttrString("latency"), seconds) && seconds > 0.0)
        latencySeconds = seconds;
    return nullptr;
}

CAudioProcessBase* CModBankedConvolverDef::createInstance() const
{
    return new CModBankedConvolver;
}

} // namespace tsm
