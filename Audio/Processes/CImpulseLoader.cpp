#include "Audio/Processes/CImpulseLoader.h"

#include "Core/CRounding.h"
#include "Core/CText.h"
#include "rsk/CDSPResampler.h"

#include <algorithm>
#include <cmath>

namespace tsm {

namespace {

constexpr double kMaxSeconds = 15.0;
constexpr double kMaxLength = 1 << 26; // of that at any rate of use
constexpr int kMaxIn = 512;
constexpr double kTransitionPct = 5.0;
constexpr double kAttenuationDb = 136.45;

/// Sends `in` through the chain, and behind it as much silence as it takes to fill `out`.
void resampleChannel(rsk::CDSPResampler16& chain, const CArray<double>& in, CArray<double>& out,
                     int outLength)
{
    const double silence[kMaxIn] = {};
    chain.clear();
    out.reserve(outLength);
    for (int at = 0; out.getCount() < outLength; at += kMaxIn) {
        const int left = in.getCount() - std::min(at, in.getCount());
        const double* ready = nullptr;
        const int count = left > 0 ? chain.process(in.data() + at, std::min(left, kMaxIn), ready)
                                   : chain.process(silence, kMaxIn, ready);
        const int wanted = std::min(count, outLength - out.getCount());
        for (int i = 0; i < wanted; ++i)
            out.add(ready[i]);
    }
}

} // namespace

CError* CImpulseLoader::load(CBankedImpulse& impulse, int wantedChannels)
{
    TSM_TRY(checkLength());
    TSM_TRY(readSamples());
    impulse.fileChannelCount = file.getChannelCount();
    impulse.fileRate = file.getSampleRate();
    impulse.bits = file.getRealBits();
    impulse.seconds = static_cast<double>(file.getSampleCount()) / file.getSampleRate();
    return makeChannels(impulse, std::min(wantedChannels, file.getChannelCount()));
}

CError* CImpulseLoader::checkLength()
{
    const double fileRate = file.getSampleRate();
    if (!rsk::CDSPResampler::isSupported(fileRate, rate))
        TSM_FAIL("@tsmstr_CImpulseLoader_checkLength_RateError "
                 "The impulse's sample rate (%1 Hz) can't be brought to %2 Hz.",
                 toFixed(fileRate, 1), toFixed(rate, 1));
    const double length =
        std::min(static_cast<double>(file.getSampleCount()), roundHalfAway(kMaxSeconds * fileRate));
    const double resampled = fileRate == rate ? length : roundHalfAway(length * rate / fileRate);
    if (resampled < 1.0 || resampled > kMaxLength || length > kMaxLength)
        TSM_FAIL("@tsmstr_CImpulseLoader_checkLength_LengthError "
                 "The impulse's length (%1 samples, %2 Hz) is of no use at %3 Hz.",
                 toString(file.getSampleCount()), toFixed(fileRate, 1), toFixed(rate, 1));
    inLength = static_cast<int>(length);
    outLength = static_cast<int>(resampled);
    return nullptr;
}

CError* CImpulseLoader::readSamples()
{
    while (samples.getCount() < file.getChannelCount())
        samples.create();
    // Memory grows with what has come: a file may claim more than it holds.
    for (int done = 0; done < inLength;) {
        const int step = std::min(inLength - done, std::max(done, CWaveFile::kBufferFrames));
        double* places[CWaveFormat::kMaxChannels];
        for (int c = 0; c < samples.getCount(); ++c) {
            samples[c].resize(done + step);
            places[c] = samples[c].data() + done;
        }
        std::int64_t gotten = 0;
        TSM_TRY(file.read(places, step, gotten));
        if (gotten != step)
            TSM_FAIL("@tsmstr_CImpulseLoader_readSamples_Incomplete "
                     "The impulse ends within its samples.");
        done += step;
    }
    return nullptr;
}

CError* CImpulseLoader::makeChannels(CBankedImpulse& impulse, int keptCount)
{
    CImpulseGain estimate(rate);
    resample(keptCount, estimate);
    const double gain = estimate.getGain();
    if (!std::isfinite(gain))
        TSM_FAIL("@tsmstr_CImpulseLoader_makeChannels_LevelError "
                 "The impulse has samples beyond any level.");
    for (const CSamples& taps : samples)
        impulse.channels.create(taps.data(), taps.getCount(), gain);
    return nullptr;
}

/// All channels count for the gain; those behind `keptCount` are dropped then.
void CImpulseLoader::resample(int keptCount, CImpulseGain& estimate)
{
    CPtr<rsk::CDSPResampler16> chain;
    if (file.getSampleRate() != rate)
        chain.reset(new rsk::CDSPResampler16(file.getSampleRate(), rate, kMaxIn, kTransitionPct,
                                             kAttenuationDb, rsk::EDSPPhase::Linear));
    for (int c = 0; c < samples.getCount(); ++c) {
        if (chain) {
            CSamples taps;
            resampleChannel(*chain, samples[c], taps, outLength);
            samples[c] = std::move(taps);
        }
        estimate.add(samples[c].data(), outLength);
        if (c >= keptCount)
            samples[c] = CSamples();
    }
    while (samples.getCount() > keptCount)
        samples.remove(samples.getCount() - 1);
}

} // namespace tsm
