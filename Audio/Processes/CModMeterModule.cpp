#include "Audio/Processes/CModMeterModule.h"

#include "Audio/CAudioBlockPool.h"
#include "Audio/CAudioEnv.h"
#include "Audio/CAudioProcessTerminalBase.h"
#include "Audio/CAudioVizCollector.h"
#include "Audio/Processes/CModMeterDef.h"
#include "Core/CRounding.h"

#include <algorithm>
#include <cmath>

namespace tsm {

namespace {

constexpr int kShortestInterval = 32;     // samples
constexpr int kLongestInterval = 1 << 30; // samples
constexpr double kLeastValue = 1e-15;     // whose reciprocal is sent

} // namespace

void CModMeterModule::init()
{
    definition = dynamic_cast<const CModMeterDef*>(&getProcess().getDefinition());
    CAudioVizCollector* collector = getProcess().getContext().vizCollector;
    source = collector ? &collector->getSource(getProcess().getPath()) : nullptr;
}

void CModMeterModule::registerParams()
{
    registerParam(0, peakTime);
    registerParam(1, rmsTime);
    registerParam(2, gain);
    registerParam(3, biasTime);
    registerParam(4, useBias);
    registerParam(5, release);
    registerParam(6, peakGain);
    registerParam(7, rmsTime2);
    registerParam(8, release2);
    registerParam(9, useTime2);
    registerParam(10, useEbu128);
}

// Settings

double CModMeterModule::read(const CAudioModuleParam& param, double otherwise) const noexcept
{
    return param.value(getGroupIndex(), getElementIndex(), otherwise);
}

bool CModMeterModule::isOn(const CAudioModuleParam& param) const noexcept
{
    return read(param, 0.0) >= 0.5;
}

bool CModMeterModule::areSettingsChanged() const noexcept
{
    const CAudioModuleParam* const settings[] = {&peakTime, &rmsTime,  &rmsTime2,
                                                 &biasTime, &useBias,  &useTime2,
                                                 &release,  &release2, &useEbu128};
    return std::ranges::any_of(settings, &CAudioModuleParam::isChanged);
}

void CModMeterModule::update()
{
    const bool isNewRate = getSampleRate() != preparedRate;
    preparedRate = getSampleRate();
    if (isNewRate || areSettingsChanged())
        recalculate();
    if (isNewRate)
        restartInterval();
    gainFactor = read(gain, 1.0);
    peakFactor = read(peakGain, 1.0);
}

EMeterKind CModMeterModule::chooseKind() const noexcept
{
    if (definition->getIsDiff())
        return EMeterKind::Difference;
    if (definition->getIsCompression())
        return EMeterKind::Minimum;
    return isOn(useEbu128) ? EMeterKind::Loudness : EMeterKind::Plain;
}

void CModMeterModule::recalculate()
{
    const bool isSecondTime = isOn(useTime2);
    CMeterSettings settings;
    settings.kind = chooseKind();
    settings.useBias = isOn(useBias);
    settings.sampleRate = getSampleRate();
    settings.peakSeconds = read(peakTime, settings.peakSeconds);
    settings.rmsSeconds = read(isSecondTime ? rmsTime2 : rmsTime, settings.rmsSeconds);
    settings.releaseSeconds = read(isSecondTime ? release2 : release, settings.releaseSeconds);
    settings.biasSeconds = read(biasTime, settings.biasSeconds);
    meter.prepare(settings);
}

void CModMeterModule::reset()
{
    meter.restart();
    restartInterval();
}

void CModMeterModule::restartInterval()
{
    if (definition->getFps() > 0.0) {
        const double exact = getSampleRate() / definition->getFps();
        const int samples = std::min(roundToInt(exact), kLongestInterval);
        interval = std::max(samples + samples % 2, kShortestInterval);
    } else {
        follow(readWindowRate());
    }
    sendCountdown = interval;
}

double CModMeterModule::readWindowRate() const
{
    const CLockScope lock(getEnv().lock);
    return getEnv().vizRate;
}

/// Takes the windows' rate, within one second and the shortest interval.
void CModMeterModule::follow(double windowRate) noexcept
{
    const int longest = std::max(roundToInt(getSampleRate()), kShortestInterval);
    interval = std::clamp(roundToInt(getSampleRate() / windowRate), kShortestInterval, longest);
}

// Signal

bool CModMeterModule::isInStepWith(const CModMeterModule& other) const noexcept
{
    return meter.isInStepWith(other.meter) && interval == other.interval &&
           sendCountdown == other.sendCountdown;
}

void CModMeterModule::processModules(CAudioModule* const* modules, int count)
{
    for (int i = 0; i < count;) {
        CModMeterModule* together[CLevelMeter::kMaxLanes] = {};
        int found = 0;
        do
            together[found++] = static_cast<CModMeterModule*>(modules[i++]);
        while (i < count && found < CLevelMeter::kMaxLanes &&
               together[0]->isInStepWith(static_cast<CModMeterModule&>(*modules[i])));
        processTogether(together, found);
    }
}

void CModMeterModule::processTogether(CModMeterModule* const* modules, int count)
{
    CModMeterModule& first = *modules[0];
    const double start = first.getEnv().streamTime;
    for (int done = 0; done < first.getBlockLength();) {
        const int run = std::min(first.getBlockLength() - done, first.sendCountdown);
        measure(modules, count, done, run);
        done += run;
        const bool isDue = run == first.sendCountdown;
        // One reading for all, or they would fall out of step.
        const double windowRate = isDue ? first.readWindowRate() : 0.0;
        for (int i = 0; i < count; ++i) {
            modules[i]->sendCountdown -= run;
            if (isDue)
                modules[i]->send(start + done / first.getSampleRate(), windowRate);
        }
    }
}

void CModMeterModule::processBlock(int first, int count)
{
    CModMeterModule* const self = this;
    measure(&self, 1, first, count);
}

void CModMeterModule::measure(CModMeterModule* const* modules, int moduleCount, int first,
                              int count)
{
    CMeterLane lanes[CLevelMeter::kMaxLanes];
    CAudioBlockRef references[CLevelMeter::kMaxLanes];
    for (int i = 0; i < moduleCount; ++i) {
        CModMeterModule& module = *modules[i];
        lanes[i].meter = &module.meter;
        lanes[i].in = module.getInput().read() + first;
        if (!module.definition->getIsDiff())
            continue;
        references[i] = module.findReference();
        lanes[i].reference = references[i].read() + first;
    }
    CLevelMeter::measure(lanes, moduleCount, count);
}

/// The reference block of this channel, silence where the second input doesn't bring it.
CAudioBlockRef CModMeterModule::findReference() const
{
    const CAudioPort* port = getProcess().findPort(1);
    const auto slot = static_cast<std::uint32_t>(getChannelIndex());
    const CAudioChannel* channel = port ? port->findChannel(slot) : nullptr;
    if (channel && channel->buffer)
        return channel->buffer;
    CAudioBlockRef silence = getPool().take(getBlockLength());
    std::fill_n(silence.write(), getBlockLength(), 0.0);
    return silence;
}

// Records

void CModMeterModule::send(double time, double windowRate)
{
    CPtr<CAudioVizDataMeter> data = makeData();
    // One sample that isn't finite would keep the integrators from it for ever.
    if (!std::isfinite(data->rms) || !std::isfinite(data->peak)) {
        meter.restartLevels();
        data->rms = data->peak = 0.0;
    }
    data->index = static_cast<std::uint32_t>(getChannelIndex());
    data->element = static_cast<std::uint32_t>(getElementIndex());
    data->group = static_cast<std::uint32_t>(getGroupIndex());
    data->time = time - 0.5 * interval / getSampleRate();
    if (source)
        source->getCollector().post(*source, CPtr<CAudioVizData>(data.release()));
    if (definition->getFps() <= 0.0)
        follow(windowRate);
    sendCountdown = interval;
}

CPtr<CAudioVizDataMeter> CModMeterModule::makeData()
{
    CPtr<CAudioVizDataMeter> data(new CAudioVizDataMeter);
    data->rms = gainFactor * meter.getLevel();
    data->peak = gainFactor * peakFactor * meter.getPeak();
    if (definition->getIsInverted()) {
        data->rms = 1.0 / std::max(data->rms, kLeastValue);
        data->peak = 1.0 / std::max(data->peak, kLeastValue);
    }
    return data;
}

} // namespace tsm
