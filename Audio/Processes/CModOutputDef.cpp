#include "Audio/Processes/CModOutputDef.h"

#include "Audio/Processes/CModOutput.h"

namespace tsm {

CAudioProcessBase* CModOutputDef::createInstance() const
{
    return new CModOutput;
}

} // namespace tsm
