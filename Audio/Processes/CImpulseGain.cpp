#include "Audio/Processes/CImpulseGain.h"

#include "Audio/Processes/CRanmar.h"
#include "rsk/CDSPRealFFTPool.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace tsm {

namespace {

constexpr double kMaxGainDb = 30.0;
constexpr double kDbPerNeper = 8.685889638065037; // 20 / ln 10
constexpr double kCornerHz = 1000.0;

/// The coefficient of the smoother y += (x - y) * c that falls by 3 dB at the corner.
double smoother(double cornerHz, double sampleRate)
{
    const double w = std::min(2.0 * std::numbers::pi * cornerHz / sampleRate, std::numbers::pi);
    const double q = 2.0 - std::cos(w);
    return 1.0 - q + std::sqrt(q * q - 1.0);
}

double sumOfSquares(const rsk::CAlignedArray<double>& values)
{
    double sum = 0.0;
    for (int i = 0; i < values.getCount(); ++i)
        sum += values[i] * values[i];
    return sum;
}

} // namespace

CImpulseGain::CImpulseGain(double sampleRate)
    : transform(rsk::CDSPRealFFTPool::get(kOrder)), signal(kFrame), frame(kFrame),
      work(transform.getWorkCount())
{
    makeSignal(sampleRate);
}

void CImpulseGain::makeSignal(double sampleRate)
{
    const double speed = smoother(kCornerHz, sampleRate);
    CRanmar random(2, 2, 1, 0);
    double state = 0.0;
    for (int i = 0; i < kHalf; ++i) {
        const double first = random.next();
        const double second = random.next();
        // From -1 to 1, both reached: the generator's numbers end 2^-24 below 1.
        const double x = (first + second) * 16777216.0 / 16777215.0 - 1.0;
        state += (x - state) * speed;
        signal[i] = state / kFrame;
        squareIn += state * state;
    }
    transform.forward(signal.data(), signal.data(), work.data());
}

void CImpulseGain::add(const double* taps, int count)
{
    frame.clear();
    for (int i = 0; i < count; ++i)
        frame[i % kHalf] += taps[i];
    transform.forward(frame.data(), frame.data(), work.data());
    transform.multiply(frame.data(), signal.data(), frame.data());
    transform.inverse(frame.data(), frame.data(), work.data());
    const double squareOut = sumOfSquares(frame);
    total +=
        std::isfinite(squareOut) ? squareIn / squareOut : std::numeric_limits<double>::quiet_NaN();
    ++channelCount;
}

double CImpulseGain::getGain() const
{
    const double db = 10.0 * std::log10(total / channelCount);
    if (std::isnan(db))
        return db;
    return std::exp(std::clamp(db, -kMaxGainDb, kMaxGainDb) / kDbPerNeper);
}

} // namespace tsm
