#include "Audio/Processes/CModNodeDef.h"

#include "Audio/Processes/CModNode.h"

namespace tsm {

CAudioProcessBase* CModNodeDef::createInstance() const
{
    return new CModNode;
}

} // namespace tsm
