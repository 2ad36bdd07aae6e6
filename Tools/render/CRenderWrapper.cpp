#include "Tools/render/CRenderWrapper.h"

#include "Audio/CAudioParam.h"

namespace tsm {

int CRenderWrapper::addEventParam(CAudioParam& param)
{
    eventParams.push_back(&param);
    return static_cast<int>(eventParams.size()) - 1;
}

void CRenderWrapper::onParamEvent(const CParamEvent& event)
{
    eventParams[static_cast<std::size_t>(event.index)]->setValue(0, 0, event.value, this);
}

} // namespace tsm
