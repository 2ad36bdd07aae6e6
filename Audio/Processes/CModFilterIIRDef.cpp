#include "Audio/Processes/CModFilterIIRDef.h"

#include "Audio/Processes/CModFilterIIR.h"

namespace tsm {

CAudioProcessBase* CModFilterIIRDef::createInstance() const
{
    return new CModFilterIIR;
}

} // namespace tsm
