#include "Audio/CAudioModule.h"

#include "Audio/CAudioProcessTerminalBase.h"
#include "Core/CLog.h"

namespace tsm {

CAudioEnv& CAudioModule::getEnv() const noexcept
{
    return process->getEnv();
}

CAudioBlockPool& CAudioModule::getPool() const noexcept
{
    return process->getPool();
}

void CAudioModule::registerParam(int index, CAudioModuleParam& param)
{
    if (index >= params.getCount())
        params.resize(index + 1, nullptr);
    params[index] = &param;
    param.values = process->findSlotValues(index);
    if (!param.values)
        logFormat("regModuleParam error %i // %s", index, process->getPath().toUtf8().c_str());
}

void CAudioModule::setLatency(int samples) noexcept
{
    for (int i = 0; i < outputCount; ++i)
        outputs[i].latency = inputLatency + samples;
}

} // namespace tsm
