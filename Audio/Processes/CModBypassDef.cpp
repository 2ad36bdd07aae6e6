#include "Audio/Processes/CModBypassDef.h"

#include "Audio/Processes/CModBypass.h"

namespace tsm {

CAudioProcessBase* CModBypassDef::createInstance() const
{
    return new CModBypass;
}

} // namespace tsm
