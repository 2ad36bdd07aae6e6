#include "Audio/Processes/CModReelpathPostDef.h"

#include "Audio/Processes/CModReelpathPost.h"

namespace tsm {

CAudioProcessBase* CModReelpathPostDef::createInstance() const
{
    return new CModReelpathPost;
}

} // namespace tsm
