#include "Audio/Processes/CModMeterModule.h"

#include "Audio/CAudioBlockPool.h"
#include "Audio/CAudioEnv.h"
#include "Audio/CAudioProcessTerminalBase.h"
#include "Audio/CAudioVizCollector.h"
#include "Audio/Processes/CModMeterDef.h"
#include "Core/CText.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tsm {

namespace {

constexpr double kFramesPerSecond = 40.0;
constexpr double kShortestTime = 0.0001; // seconds
constexpr double kTiny = 1e-15;          // keeps ratios of silence at 1
constexpr double kLeastBias = 1e-30;
constexpr int kShortestInterval = 32;     // samples
constexpr int kLongestInterval = 1 << 30; // samples
constexpr double kLoudnessScale = 0.927414538975768;

/// 25 ms in samples.
int frameSamples(double sampleRate)
{
    return std::max(roundToInt(sampleRate / kFramesPerSecond), 1);
}

int frameCount(double seconds, double sampleRate, int frameLength)
{
    return std::clamp(roundToInt(seconds * sampleRate / frameLength), 1, CPeakHold::kMaxFrames);
}

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
    if (isNewRate || areSettingsChanged())
        recalculate();
    if (isNewRate)
        restartInterval();
    preparedRate = getSampleRate();
    gainFactor = read(gain, 1.0);
    peakFactor = read(peakGain, 1.0);
}

/// With e = 1 - cos(w) this is the root of the one-pole's gain equation for the corner w; written
/// so that long times keep their digits.
double CModMeterModule::coefficient(double seconds, double sampleRate) noexcept
{
    constexpr double kCorner = 1.362; // so that the integrator reaches its stated time
    const double time = seconds > kShortestTime ? seconds : kShortestTime;
    const double half = std::sin(std::numbers::pi / sampleRate / (time * kCorner));
    const double e = 2.0 * half * half;
    return std::sqrt(e * (2.0 + e)) - e;
}

void CModMeterModule::recalculate()
{
    const double rate = getSampleRate();
    frameLength = frameSamples(rate);
    const bool isSecondTime = isOn(useTime2);
    const double integration = isSecondTime ? read(rmsTime2, 0.15) : read(rmsTime, 0.15);
    const double releaseSeconds = isSecondTime ? read(release2, 0.5) : read(release, 0.5);
    isMinimum = definition->getIsCompression() || definition->getIsDiff();
    isBiased = isMinimum && isOn(useBias);
    isLoudness = !isMinimum && isOn(useEbu128);
    rmsCoefficient = coefficient(integration, rate);
    releaseCoefficient = releaseSeconds >= kShortestTime ? coefficient(releaseSeconds, rate) : 1.0;
    biasCoefficient = coefficient(read(biasTime, 2.0), rate);
    kernel = chooseKernel();

    hold.restart(frameCount(read(peakTime, 1.0), rate, frameLength), 0.0, isMinimum);
    energies.clear();
    energies.resize(isLoudness ? frameCount(integration, rate, frameLength) : 1, 0.0);
    weighting.prepare(rate);
    restartLevels();
}

CModMeterModule::CKernel CModMeterModule::chooseKernel() const noexcept
{
    if (definition->getIsDiff())
        return isBiased ? &CModMeterModule::runBiasedRatio : &CModMeterModule::runRatio;
    if (definition->getIsCompression())
        return isBiased ? &CModMeterModule::runMinimum<true> : &CModMeterModule::runMinimum<false>;
    return isLoudness ? &CModMeterModule::runLoudness : &CModMeterModule::runPlain;
}

/// A level over its bias begins at 1.0, a level alone in silence.
void CModMeterModule::restartLevels()
{
    const double level = isBiased ? 1.0 : 0.0;
    rms = rms2 = rel = bias = peakNow = level;
    frameCountdown = frameLength;
    hold.restart(hold.getFrameCount(), level, isMinimum);
    weighting.reset();
    std::ranges::fill(energies, 0.0);
    energyIndex = 0;
    frameEnergy = 0.0;
}

void CModMeterModule::reset()
{
    restartLevels();
    restartInterval();
}

void CModMeterModule::restartInterval()
{
    if (definition->getFps() > 0.0) {
        const double exact = getSampleRate() / definition->getFps();
        const int samples = std::min(roundToInt(exact), kLongestInterval);
        interval = std::max(samples + samples % 2, kShortestInterval);
    } else {
        followWindows();
    }
    sendCountdown = interval;
}

/// Takes the windows' rate, within one second and the shortest interval.
void CModMeterModule::followWindows()
{
    double fps = 0.0;
    {
        const CLockScope lock(getEnv().lock);
        fps = getEnv().vizRate;
    }
    const int longest = std::max(roundToInt(getSampleRate()), kShortestInterval);
    interval = std::clamp(roundToInt(getSampleRate() / fps), kShortestInterval, longest);
}

// Signal

void CModMeterModule::processModules(CAudioModule* const* modules, int count)
{
    for (int i = 0; i < count; ++i)
        static_cast<CModMeterModule*>(modules[i])->process();
}

void CModMeterModule::process()
{
    const double start = getEnv().streamTime;
    for (int done = 0; done < getBlockLength();) {
        const int count = std::min(getBlockLength() - done, sendCountdown);
        processBlock(done, count);
        done += count;
        sendCountdown -= count;
        if (sendCountdown == 0)
            send(start + done / getSampleRate());
    }
}

void CModMeterModule::processBlock(int first, int count)
{
    const double* in = getInput().read() + first;
    const CAudioBlockRef other = definition->getIsDiff() ? findReference() : CAudioBlockRef();
    const double* reference = other ? other.read() + first : nullptr;
    while (count > 0) {
        const int run = std::min(count, frameCountdown);
        (this->*kernel)(in, reference, run);
        in += run;
        reference = reference ? reference + run : nullptr;
        count -= run;
        frameCountdown -= run;
        if (frameCountdown == 0)
            endFrame();
    }
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

void CModMeterModule::runPlain(const double* in, const double*, int count)
{
    double level = rms;
    double follower = rel;
    double peak = peakNow;
    for (int i = 0; i < count; ++i) {
        const double square = in[i] * in[i];
        level += (square - level) * rmsCoefficient;
        const double released = follower + (level - follower) * releaseCoefficient;
        follower = level > follower ? level : released;
        peak = std::max(peak, std::max(square, follower));
    }
    rms = level;
    rel = follower;
    peakNow = peak;
}

template <bool kUseBias>
void CModMeterModule::runMinimum(const double* in, const double*, int count)
{
    for (int i = 0; i < count; ++i) {
        double square = in[i] * in[i];
        if constexpr (kUseBias) {
            bias += (square - bias) * biasCoefficient;
            square /= std::max(bias, kLeastBias);
        }
        rms += (square - rms) * rmsCoefficient;
        const double released = rel + (rms - rel) * releaseCoefficient;
        rel = rms < rel ? rms : released;
        peakNow = std::min(peakNow, std::min(square, rel));
    }
}

void CModMeterModule::runRatio(const double* in, const double* reference, int count)
{
    double level = rms;
    double level2 = rms2;
    for (int i = 0; i < count; ++i) {
        level += (in[i] * in[i] - level) * rmsCoefficient;
        level2 += (reference[i] * reference[i] - level2) * rmsCoefficient;
    }
    rms = level;
    rms2 = level2;
}

void CModMeterModule::runBiasedRatio(const double* in, const double* reference, int count)
{
    for (int i = 0; i < count; ++i) {
        rms += (in[i] * in[i] - rms) * rmsCoefficient;
        rms2 += (reference[i] * reference[i] - rms2) * rmsCoefficient;
        const double ratio = (kTiny + rms) / (kTiny + rms2);
        bias += (ratio - bias) * biasCoefficient;
        rel = ratio / std::max(bias, kLeastBias);
        peakNow = std::min(peakNow, rel);
    }
}

void CModMeterModule::runLoudness(const double* in, const double*, int count)
{
    for (int i = 0; i < count; ++i) {
        const double weighted = weighting.process(in[i]);
        frameEnergy += weighted * weighted;
        peakNow = std::max(peakNow, std::abs(in[i]));
    }
}

void CModMeterModule::endFrame()
{
    hold.addFrame(peakNow);
    peakNow = rel;
    frameCountdown = frameLength;
    if (!isLoudness)
        return;
    peakNow = 0.0;
    energies[energyIndex] = frameEnergy / frameLength;
    energyIndex = (energyIndex + 1) % energies.getCount();
    frameEnergy = 0.0;
    rel = 0.0;
    for (const double energy : energies)
        rel += energy;
}

// Records

void CModMeterModule::send(double time)
{
    CPtr<CAudioVizDataMeter> data = makeData();
    // One sample that isn't finite would keep the integrators from it for ever.
    if (!std::isfinite(data->rms) || !std::isfinite(data->peak)) {
        restartLevels();
        data->rms = data->peak = 0.0;
    }
    data->index = static_cast<std::uint32_t>(getChannelIndex());
    data->element = static_cast<std::uint32_t>(getElementIndex());
    data->group = static_cast<std::uint32_t>(getGroupIndex());
    data->time = time - 0.5 * interval / getSampleRate();
    if (source)
        source->getCollector().post(*source, CPtr<CAudioVizData>(data.release()));
    if (definition->getFps() <= 0.0)
        followWindows();
    sendCountdown = interval;
}

CPtr<CAudioVizDataMeter> CModMeterModule::makeData()
{
    CPtr<CAudioVizDataMeter> data(new CAudioVizDataMeter);
    const double peak = hold.choose(peakNow, hold.getHeld());
    if (definition->getIsDiff() && !isBiased) {
        data->rms = gainFactor * std::sqrt((rms + kTiny) / (kTiny + rms2));
        data->peak = data->rms * peakFactor;
    } else if (isLoudness) {
        data->rms = kLoudnessScale * gainFactor * std::sqrt(std::abs(rel / energies.getCount()));
        data->peak = gainFactor * peakFactor * peak;
    } else {
        data->rms = gainFactor * std::sqrt(std::abs(rel));
        data->peak = gainFactor * peakFactor * std::sqrt(peak);
    }
    if (definition->getIsInverted()) {
        data->rms = 1.0 / std::max(data->rms, kTiny);
        data->peak = 1.0 / std::max(data->peak, kTiny);
    }
    return data;
}

} // namespace tsm
