#include "Audio/Processes/CModDecimatorDef.h"

#include "Audio/Processes/CModDecimator.h"

namespace tsm {

CAudioProcessBase* CModDecimatorDef::createInstance() const
{
    return new CModDecimator;
}

} // namespace tsm
