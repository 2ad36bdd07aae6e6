#pragma once

#include "Audio/Processes/CTapePostStage.h"
#include "Audio/Processes/CTapeStage.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <vector>

namespace tsm::test {

using CSignal = std::vector<double>;

inline CSignal noise(int count, double peak, unsigned seed = 1)
{
    std::mt19937 generator(seed);
    std::uniform_real_distribution<double> uniform(-peak, peak);
    CSignal signal(static_cast<std::size_t>(count));
    std::ranges::generate(signal, [&] { return uniform(generator); });
    return signal;
}

inline CSignal sine(int count, double hz, double sampleRate, double peak)
{
    CSignal signal(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < signal.size(); ++i)
        signal[i] = peak * std::sin(2.0 * std::numbers::pi * hz / sampleRate * double(i));
    return signal;
}

/// Gain and phase of `out` against `in` at one frequency, over the samples behind `skip`; that span
/// should hold whole periods.
inline std::complex<double> responseAt(const CSignal& in, const CSignal& out, double hz,
                                       double sampleRate, std::size_t skip)
{
    std::complex<double> entered;
    std::complex<double> left;
    for (std::size_t i = skip; i < in.size(); ++i) {
        const auto probe = std::polar(1.0, -2.0 * std::numbers::pi * hz / sampleRate * double(i));
        entered += in[i] * probe;
        left += out[i] * probe;
    }
    return left / entered;
}

/// A stage with history memory of exactly the size it asks for, so that a sanitizer sees a step
/// outside.
template <class Stage>
class CTapeRig {
public:
    template <class Settings>
    explicit CTapeRig(const Settings& settings)
    {
        update(settings);
    }
    CTapeRig(const CTapeRig&) = delete;
    CTapeRig& operator=(const CTapeRig&) = delete;

    template <class Settings>
    void update(const Settings& settings)
    {
        stage.update(settings);
        history = CSignal(static_cast<std::size_t>(stage.getHistoryCount()));
        stage.setHistory(history.data());
    }

    CSignal process(const CSignal& in, int blockLength = 512)
    {
        CSignal out(in.size());
        const int count = static_cast<int>(in.size());
        for (int i = 0; i < count; i += blockLength) {
            const typename Stage::CLane lane{in.data() + i, out.data() + i, &stage};
            Stage::process(&lane, 1, std::min(blockLength, count - i));
        }
        return out;
    }

    Stage stage;

private:
    CSignal history;
};

using CTapeStageRig = CTapeRig<CTapeStage>;
using CTapePostRig = CTapeRig<CTapePostStage>;

} // namespace tsm::test
