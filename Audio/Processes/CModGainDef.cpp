#include "Audio/Processes/CModGainDef.h"

#include "Audio/Processes/CModGain.h"

namespace tsm {

CAudioProcessBase* CModGainDef::createInstance() const
{
    return new CModGain;
}

} // namespace tsm
