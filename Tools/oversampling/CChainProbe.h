#pragma once

#include "Core/CError.h"
#include "Tools/engine/CEngineWrapper.h"

#include <memory>
#include <vector>

namespace tsm {

/// How an instance is to oversample.
struct COversamplingChoice {
    int factor = 1; // 1, 2, 4 or 8
    bool isLinear = false;
    double rate = 44100.0; // of the host, Hz
};

/// One channel through an instance without flutter's depth and without an impulse, so that what is
/// left is the tape's curve and the filters.
class CChainProbe {
public:
    /// Makes the instance and starts it. The application runs. Errors: those of the instance.
    [[nodiscard]] CError* open(const COversamplingChoice& choice, double recGainDb,
                               double hardnessPercent);

    /// The figure that hosts are told, in samples.
    [[nodiscard]] int getLatency() { return wrapper->queryLatency(); }
    /// Samples that come out for `in`, from where the probe stands.
    [[nodiscard]] std::vector<double> process(const std::vector<double>& in);

private:
    [[nodiscard]] CError* set(const char* name, double value);

    std::unique_ptr<CEngineWrapper> wrapper;
};

} // namespace tsm
