#include "Audio/Processes/CLevelMeter.h"

#include "Core/CRounding.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>

namespace tsm {

namespace {

constexpr double kFramesPerSecond = 40.0;
constexpr double kShortestTime = 0.0001; // seconds
constexpr double kTiny = 1e-15;          // keeps the ratio of silence to silence at 1
constexpr double kLeastBias = 1e-30;     // below what follows any signal
constexpr double kLoudnessScale = 0.927414538975768;

/// The same number of two meters, for arithmetic in step.
using CTwin = double __attribute__((vector_size(16)));

CTwin larger(CTwin a, CTwin b) noexcept
{
    return a < b ? b : a;
}

/// A lone lane stands for both.
const CMeterLane& secondOf(const CMeterLane* lanes, int laneCount) noexcept
{
    return lanes[laneCount - 1];
}

int frameCount(double seconds, double sampleRate, int frameLength)
{
    return std::clamp(roundToInt(seconds * sampleRate / frameLength), 1, CPeakHold::kMaxFrames);
}

} // namespace

// Settings

/// With e = 1 - cos(w) this is the root of the one-pole's gain equation for the corner w; written
/// so that long times keep their digits.
double CLevelMeter::coefficient(double seconds, double sampleRate) noexcept
{
    constexpr double kCorner = 1.362; // so that the integrator reaches its stated time
    const double time = seconds > kShortestTime ? seconds : kShortestTime;
    const double half = std::sin(std::numbers::pi / sampleRate / (time * kCorner));
    const double e = 2.0 * half * half;
    return std::sqrt(e * (2.0 + e)) - e;
}

void CLevelMeter::prepare(const CMeterSettings& newSettings)
{
    settings = newSettings;
    const double rate = settings.sampleRate;
    const bool isLoudness = settings.kind == EMeterKind::Loudness;
    isMinimum = settings.kind == EMeterKind::Minimum || settings.kind == EMeterKind::Difference;
    isBiased = isMinimum && settings.useBias;
    kernel = chooseKernel();
    frameLength = std::max(roundToInt(rate / kFramesPerSecond), 1);
    rmsCoefficient = coefficient(settings.rmsSeconds, rate);
    releaseCoefficient =
        settings.releaseSeconds >= kShortestTime ? coefficient(settings.releaseSeconds, rate) : 1.0;
    biasCoefficient = coefficient(settings.biasSeconds, rate);
    hold.restart(frameCount(settings.peakSeconds, rate, frameLength), 0.0, isMinimum);
    energies.clear();
    energies.resize(isLoudness ? frameCount(settings.rmsSeconds, rate, frameLength) : 1, 0.0);
    weighting.prepare(rate);
    restart();
}

CLevelMeter::CKernel CLevelMeter::chooseKernel() const noexcept
{
    using M = CLevelMeter;
    switch (settings.kind) {
    case EMeterKind::Minimum:
        return isBiased ? runEach<&M::runMinimum<true>> : runEach<&M::runMinimum<false>>;
    case EMeterKind::Difference:
        return isBiased ? runEach<&M::runBiasedRatio> : runRatio;
    case EMeterKind::Loudness:
        return runEach<&M::runLoudness>;
    case EMeterKind::Plain:
        break;
    }
    return runPlain;
}

void CLevelMeter::restart() noexcept
{
    frameCountdown = frameLength;
    restartLevels();
}

/// A level over its bias begins at 1, a level alone in silence.
void CLevelMeter::restartLevels() noexcept
{
    const double level = isBiased ? 1.0 : 0.0;
    rms = rms2 = rel = bias = peakNow = level;
    hold.restart(hold.getFrameCount(), level, isMinimum);
    weighting.reset();
    std::ranges::fill(energies, 0.0);
    energyIndex = 0;
    frameEnergy = 0.0;
}

// Measurement

void CLevelMeter::measure(CMeterLane* lanes, int laneCount, int count) noexcept
{
    assert(laneCount >= 1 && laneCount <= kMaxLanes);
    const CLevelMeter& first = *lanes[0].meter;
    while (count > 0) {
        const int run = std::min(count, first.frameCountdown);
        first.kernel(lanes, laneCount, run);
        count -= run;
        for (int k = 0; k < laneCount; ++k) {
            CMeterLane& lane = lanes[k];
            lane.in += run;
            lane.reference = lane.reference ? lane.reference + run : nullptr;
            lane.meter->frameCountdown -= run;
            if (lane.meter->frameCountdown == 0)
                lane.meter->endFrame();
        }
    }
}

void CLevelMeter::runPlain(const CMeterLane* lanes, int laneCount, int count) noexcept
{
    const CMeterLane& laneA = lanes[0];
    const CMeterLane& laneB = secondOf(lanes, laneCount);
    CLevelMeter& a = *laneA.meter;
    CLevelMeter& b = *laneB.meter;
    const CTwin integrate = {a.rmsCoefficient, b.rmsCoefficient};
    const CTwin fall = {a.releaseCoefficient, b.releaseCoefficient};
    CTwin level = {a.rms, b.rms};
    CTwin follower = {a.rel, b.rel};
    CTwin peak = {a.peakNow, b.peakNow};
    for (int i = 0; i < count; ++i) {
        const CTwin sample = {laneA.in[i], laneB.in[i]};
        const CTwin square = sample * sample;
        level += (square - level) * integrate;
        // Between both, so that the larger is the level where that rises, else the release.
        follower = larger(follower + (level - follower) * fall, level);
        peak = larger(peak, larger(square, follower));
    }
    a.rms = level[0], b.rms = level[1];
    a.rel = follower[0], b.rel = follower[1];
    a.peakNow = peak[0], b.peakNow = peak[1];
}

void CLevelMeter::runRatio(const CMeterLane* lanes, int laneCount, int count) noexcept
{
    const CMeterLane& laneA = lanes[0];
    const CMeterLane& laneB = secondOf(lanes, laneCount);
    CLevelMeter& a = *laneA.meter;
    CLevelMeter& b = *laneB.meter;
    const CTwin integrate = {a.rmsCoefficient, b.rmsCoefficient};
    CTwin level = {a.rms, b.rms};
    CTwin level2 = {a.rms2, b.rms2};
    for (int i = 0; i < count; ++i) {
        const CTwin sample = {laneA.in[i], laneB.in[i]};
        const CTwin sample2 = {laneA.reference[i], laneB.reference[i]};
        level += (sample * sample - level) * integrate;
        level2 += (sample2 * sample2 - level2) * integrate;
    }
    a.rms = level[0], b.rms = level[1];
    a.rms2 = level2[0], b.rms2 = level2[1];
}

template <void (CLevelMeter::*kRun)(const CMeterLane& lane, int count) noexcept>
void CLevelMeter::runEach(const CMeterLane* lanes, int laneCount, int count) noexcept
{
    for (int k = 0; k < laneCount; ++k)
        (lanes[k].meter->*kRun)(lanes[k], count);
}

template <bool kUseBias>
void CLevelMeter::runMinimum(const CMeterLane& lane, int count) noexcept
{
    for (int i = 0; i < count; ++i) {
        double square = lane.in[i] * lane.in[i];
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

void CLevelMeter::runBiasedRatio(const CMeterLane& lane, int count) noexcept
{
    for (int i = 0; i < count; ++i) {
        const double sample = lane.in[i];
        const double sample2 = lane.reference[i];
        rms += (sample * sample - rms) * rmsCoefficient;
        rms2 += (sample2 * sample2 - rms2) * rmsCoefficient;
        const double ratio = (kTiny + rms) / (kTiny + rms2);
        bias += (ratio - bias) * biasCoefficient;
        rel = ratio / std::max(bias, kLeastBias);
        peakNow = std::min(peakNow, rel);
    }
}

void CLevelMeter::runLoudness(const CMeterLane& lane, int count) noexcept
{
    for (int i = 0; i < count; ++i) {
        const double weighted = weighting.process(lane.in[i]);
        frameEnergy += weighted * weighted;
        peakNow = std::max(peakNow, std::abs(lane.in[i]));
    }
}

void CLevelMeter::endFrame() noexcept
{
    hold.addFrame(peakNow);
    peakNow = rel;
    frameCountdown = frameLength;
    if (settings.kind == EMeterKind::Loudness)
        endLoudnessFrame();
}

/// The sum is formed anew, since a running one would keep each rounding.
void CLevelMeter::endLoudnessFrame() noexcept
{
    energies[energyIndex] = frameEnergy / frameLength;
    energyIndex = (energyIndex + 1) % energies.getCount();
    rel = 0.0;
    for (const double energy : energies)
        rel += energy;
    frameEnergy = 0.0;
    peakNow = 0.0;
}

// Readings

double CLevelMeter::getLevel() const noexcept
{
    if (settings.kind == EMeterKind::Difference && !isBiased)
        return std::sqrt((rms + kTiny) / (kTiny + rms2));
    if (settings.kind == EMeterKind::Loudness)
        return kLoudnessScale * std::sqrt(std::abs(rel / energies.getCount()));
    return std::sqrt(std::abs(rel));
}

double CLevelMeter::getPeak() const noexcept
{
    if (settings.kind == EMeterKind::Difference && !isBiased)
        return getLevel();
    const double peak = hold.choose(peakNow, hold.getHeld());
    return settings.kind == EMeterKind::Loudness ? peak : std::sqrt(peak);
}

} // namespace tsm
