#include "Audio/Processes/CModResamplerDef.h"

#include "Audio/Processes/CModResampler.h"

namespace tsm {

CError* CModResamplerDef::init()
{
    TSM_TRY(CAudioProcessDefBase::init());
    isUpsampler = getAttrBool("is-upsampler");
    return nullptr;
}

CAudioProcessBase* CModResamplerDef::createInstance() const
{
    return new CModResampler;
}

} // namespace tsm
