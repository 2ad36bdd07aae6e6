#include "Audio/CWrapperGraph.h"

#include "Audio/CAudioProcessDefBase.h"
#include "Audio/Processes/CModOutput.h"

#include <algorithm>
#include <array>
#include <cassert>

namespace tsm {

CError* CWrapperGraph::create(CObject& finder, CAudioEnv& env, CAudioParamCollector& collector,
                              CAudioVizCollector& vizCollector)
{
    context = {&env, &collector, &pool, &vizCollector};
    TSM_TRY(createFrom(mainProcess, finder, "shared::audio.modMain", "plugin.modMain"));
    TSM_TRY(createFrom(outputProcess, finder, "shared::audio.modOutput", "plugin.modOutput"));
    outputModule = dynamic_cast<CModOutput*>(outputProcess.get());
    if (!outputModule)
        TSM_FAIL("@tsmstr_CAudioWrapper_init_InvalidOutProcessType Output process object "
                 "'shared::audio.modOutput' is not of required 'CModOutput' type.");
    inputLink = &CAudioProcessBase::connect(nullptr, 0, *mainProcess, 0);
    CAudioProcessBase::connect(mainProcess.get(), 0, *outputProcess, 0);
    return nullptr;
}

CError* CWrapperGraph::createFrom(CPtr<CAudioProcessBase>& process, CObject& finder,
                                  const char* definitionName, const char* instanceName)
{
    CAudioProcessDefBase* definition = nullptr;
    TSM_TRY(finder.findObjectChecked(definition, definitionName));
    return createProcess(process, *definition, context, nullptr, instanceName);
}

void CWrapperGraph::destroy()
{
    steps.forget();
    inputLink = nullptr;
    outputModule = nullptr;
    mainProcess.reset();
    outputProcess.reset();
}

void CWrapperGraph::publishInput(int channelCount, double sampleRate)
{
    assert(channelCount <= kMaxPortChannels);
    CAudioFormat format;
    format.sampleRate = sampleRate;
    for (int i = 0; i < channelCount; ++i)
        format.add({static_cast<std::uint32_t>(i), 0, 0});
    inputLink->publish(format);
}

double* CWrapperGraph::beginInput(int channel, int length)
{
    CAudioBlockRef block = pool.take(length);
    double* const samples = block.write();
    inputLink->put(channel, std::move(block), length);
    return samples;
}

void CWrapperGraph::run()
{
    steps.run(*mainProcess);
    outputModule->process();
}

const CAudioPort* CWrapperGraph::findOutput() const
{
    return outputModule->findPort(0);
}

bool CWrapperGraph::isOutputUsable(const CHostOutput& host) const
{
    const CAudioPort* output = findOutput();
    for (int i = 0; i < output->getChannelCount(); ++i) {
        const CAudioBlockRef& block = output->getChannel(i).buffer;
        if (block && !host.canHold(block.read(), outputModule->getBlockLength()))
            return false;
    }
    return true;
}

void CWrapperGraph::writeOutput(const CHostOutput& host, int first, int length) const
{
    const CAudioPort* output = findOutput();
    std::array<int, kMaxPortChannels> written{};
    for (int i = 0; i < output->getChannelCount(); ++i) {
        const CAudioChannel& channel = output->getChannel(i);
        const int slot = static_cast<int>(channel.channel);
        if (!channel.buffer || slot >= std::min(host.getChannelCount(), kMaxPortChannels))
            continue;
        int& done = written[channel.channel];
        const int count = std::min(length - done, outputModule->getBlockLength());
        host.write(slot, first + done, channel.buffer.read(), count);
        done += count;
    }
    for (int slot = 0; slot < host.getChannelCount(); ++slot) {
        const int done = slot < kMaxPortChannels ? written[static_cast<std::size_t>(slot)] : 0;
        if (done < length)
            host.silence(slot, first + done, length - done);
    }
}

void CWrapperGraph::release()
{
    inputLink->clear();
    outputModule->clear();
}

void CWrapperGraph::reset()
{
    steps.forget();
    mainProcess->reset();
    outputProcess->reset();
}

} // namespace tsm
