#include "Audio/Processes/CModReelpathDef.h"

#include "Audio/Processes/CModReelpath.h"

namespace tsm {

CAudioProcessBase* CModReelpathDef::createInstance() const
{
    return new CModReelpath;
}

} // namespace tsm
