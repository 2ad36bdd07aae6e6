#include "Audio/CAudioEnv.h"

namespace tsm {

void CAudioEnv::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

} // namespace tsm
