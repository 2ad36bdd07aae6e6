#include "Audio/Processes/CModFilterFIR.h"

namespace tsm {

CError* CModFilterFIR::init()
{
    TSM_TRY(CAudioProcessTerminalBase::init());
    findGenArray(*this);
    return nullptr;
}

} // namespace tsm
