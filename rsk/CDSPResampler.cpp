#include "rsk/CDSPResampler.h"

#include "rsk/CDSPBlockConvolver.h"
#include "rsk/CDSPFracInterpolator.h"
#include "rsk/CDSPHBDownsampler.h"
#include "rsk/CDSPHBUpsampler.h"

#include <algorithm>
#include <cassert>

namespace tsm::rsk {

namespace {

struct CRatio {
    int up;
    int down;
};

constexpr CRatio kSimpleRatios[] = {{1, 2}, {1, 3}, {2, 3}, {3, 2}, {3, 4}};
constexpr double kMaxRatio = 512.0;

// How far the band reaches beyond half of the rate, for a percent of transition band, where the
// rate ahead of the interpolator is chosen.
constexpr double kReach = 0.0175;

} // namespace

bool CDSPResampler::isSupported(double sourceRate, double destRate) noexcept
{
    return sourceRate > 0.0 && destRate > 0.0 && sourceRate <= kMaxRatio * destRate &&
           destRate <= kMaxRatio * sourceRate;
}

CDSPResampler::CDSPResampler(double source, double dest, int maxInLen, double transition,
                             double attenuation, EDSPPhase wantedPhase)
    : sourceRate(source), destRate(dest), transitionPct(transition), attenuationDb(attenuation),
      phase(wantedPhase), rate(source), maxLen(maxInLen)
{
    assert(isSupported(source, dest) && maxInLen > 0);
    if (sourceRate == destRate || addSimpleRatio() || addWholeUpsampling() || addDownsampling())
        return;
    addGeneral();
}

bool CDSPResampler::addSimpleRatio()
{
    for (const CRatio& ratio : kSimpleRatios)
        if (sourceRate * ratio.up == destRate * ratio.down) {
            addConvolver(ratio.up, ratio.down, 1.0 / std::max(ratio.up, ratio.down), transitionPct);
            return true;
        }
    return false;
}

bool CDSPResampler::addWholeUpsampling()
{
    for (const int factor : {2, 3}) {
        int halfBands = 0;
        double reached = factor * sourceRate;
        for (; reached < destRate; reached *= 2.0)
            ++halfBands;
        if (reached == destRate) {
            addConvolver(factor, 1, 1.0 / factor, transitionPct);
            addHalfBandUp(halfBands);
            return true;
        }
    }
    return false;
}

bool CDSPResampler::addDownsampling()
{
    if (2.0 * destRate > sourceRate)
        return false;
    int halfBands = 0;
    double lowRate = destRate; // what the half-band stages would leave of the destination's band
    for (double test = 4.0 * destRate; test <= sourceRate; test *= 2.0) {
        ++halfBands;
        lowRate *= 2.0;
    }
    addHalfBandDown(halfBands);
    for (const int factor : {2, 3})
        if (lowRate * factor == sourceRate) {
            addConvolver(1, factor, 1.0 / factor, transitionPct);
            return true;
        }
    addConvolver(1, 1, lowRate / sourceRate, transitionPct);
    addInterpolator();
    return true;
}

void CDSPResampler::addGeneral()
{
    addConvolver(2, 1, 0.5 * std::min(1.0, destRate / sourceRate), transitionPct);

    // As near to the destination as doubling, or tripling and doubling, gets: the higher the rate,
    // the less the interpolator has to do.
    const double reach = sourceRate / (1.0 - transitionPct * kReach);
    int factor = 1;
    int halfBands = 0;
    for (const int first : {2, 3}) {
        int doublings = 0;
        int product = first;
        for (; 2.0 * product * 2.0 * reach <= destRate; product *= 2)
            ++doublings;
        if (2.0 * product * reach <= destRate && product > factor * (1 << halfBands)) {
            factor = first;
            halfBands = doublings;
        }
    }
    if (factor > 1) {
        const double raised = sourceRate * factor * (1 << halfBands);
        addConvolver(factor, 1, 1.0 / factor, (1.0 - raised / destRate) / kReach);
        addHalfBandUp(halfBands);
    }
    addInterpolator();
}

void CDSPResampler::addConvolver(int upFactor, int downFactor, double frequency, double widthPct)
{
    const CDSPLowPass::CKey filter{frequency, widthPct, attenuationDb, phase,
                                   static_cast<double>(upFactor)};
    add(new CDSPBlockConvolver(filter, upFactor, downFactor, maxLen), rate * upFactor / downFactor);
}

void CDSPResampler::addHalfBandUp(int count)
{
    for (int i = 0; i < count; ++i)
        add(new CDSPHBUpsampler(0.5 * sourceRate / (2.0 * rate), attenuationDb, maxLen),
            2.0 * rate);
}

void CDSPResampler::addHalfBandDown(int count)
{
    for (int i = 0; i < count; ++i)
        add(new CDSPHBDownsampler(0.5 * destRate / rate, attenuationDb, maxLen), 0.5 * rate);
}

void CDSPResampler::addInterpolator()
{
    add(new CDSPFracInterpolator(rate, destRate, attenuationDb, maxLen), destRate);
}

void CDSPResampler::add(CDSPProcessor* stage, double newRate)
{
    stages.add(stage);
    maxLen = stage->getMaxOutLen(maxLen);
    rate = newRate;
}

int CDSPResampler::getLatency() const
{
    return stages.isEmpty() ? 0 : stages.last().getLatency();
}

double CDSPResampler::getLatencyFrac() const
{
    return stages.isEmpty() ? 0.0 : stages.last().getLatencyFrac();
}

int CDSPResampler::getMaxOutLen(int maxInLen) const
{
    int length = maxInLen;
    for (const CDSPProcessor& stage : stages)
        length = stage.getMaxOutLen(length);
    return length;
}

void CDSPResampler::clear()
{
    for (CDSPProcessor& stage : stages)
        stage.clear();
}

int CDSPResampler::process(const double* input, int length, const double*& output)
{
    output = input;
    for (CDSPProcessor& stage : stages)
        length = stage.process(output, length, output);
    return length;
}

} // namespace tsm::rsk
