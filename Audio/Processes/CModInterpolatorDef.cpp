#include "Audio/Processes/CModInterpolatorDef.h"

#include "Audio/Processes/CModInterpolator.h"

namespace tsm {

CAudioProcessBase* CModInterpolatorDef::createInstance() const
{
    return new CModInterpolator;
}

} // namespace tsm
