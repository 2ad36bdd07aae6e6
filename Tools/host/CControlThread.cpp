#include "Tools/host/CControlThread.h"

#include "Tools/hostlib/CVstParams.h"

#include <random>

namespace tsm {

using namespace Steinberg::Vst;

CControlThread::CControlThread(const CVstInstance& owner)
    : instance(owner), thread([this] { run(); })
{
}

CControlThread::~CControlThread()
{
    join();
}

void CControlThread::run()
{
    while (!isEnding && !failure) {
        failure = CPtr<CError>(doRound(roundCount));
        ++roundCount;
    }
}

CError* CControlThread::doRound(int round) const
{
    const CVstParams params(instance.getController());
    std::minstd_rand random(static_cast<unsigned>(round) + 1);
    std::uniform_real_distribution<double> anywhere(0.0, 1.0);
    for (const CVstParam& param : params.getAll()) {
        if (param.has(ParameterInfo::kIsProgramChange) || param.has(ParameterInfo::kIsReadOnly))
            continue;
        const double former = params.getValue(param);
        params.setValue(param, anywhere(random));
        if (params.toText(param, params.getValue(param)).isEmpty())
            TSM_FAIL("parameter '%1' has no text", param.title);
        params.setValue(param, former);
    }
    std::string state;
    return instance.getState(state);
}

CError* CControlThread::finish(int& rounds)
{
    join();
    rounds = roundCount;
    if (!failure && rounds == 0)
        TSM_FAIL("the sound was too short for the control thread");
    return failure.release();
}

void CControlThread::join()
{
    isEnding = true;
    if (thread.joinable())
        thread.join();
}

} // namespace tsm
