#include "Audio/Processes/CModFilterIIR.h"

namespace tsm {

CError* CModFilterIIR::init()
{
    TSM_TRY(CAudioProcessTerminalBase::init());
    findGenArray(*this);
    return nullptr;
}

} // namespace tsm
