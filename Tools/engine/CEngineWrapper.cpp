#include "Tools/engine/CEngineWrapper.h"

#include "Audio/CAudioParam.h"
#include "Tools/Support/CSoundRender.h"

namespace tsm {

CError* CEngineWrapper::prepare()
{
    constexpr double kSetUpRate = 4000.0;
    static_assert(kSetUpRate < CSoundRender::kMinRate);

    TSM_TRY(init());
    setSampleRate(kSetUpRate);
    afterInit();
    return nullptr;
}

void CEngineWrapper::setFormat(double rate, int channelCount, bool isDouble)
{
    setSampleRate(rate);
    setChannelFormat({channelCount, isDouble, false}, {});
    setOutputFormat({channelCount, isDouble, false});
}

int CEngineWrapper::addEventParam(CAudioParam& param)
{
    eventParams.push_back(&param);
    return static_cast<int>(eventParams.size()) - 1;
}

void CEngineWrapper::onParamEvent(const CParamEvent& event)
{
    eventParams[static_cast<std::size_t>(event.index)]->setValue(0, 0, event.value, this);
}

} // namespace tsm
