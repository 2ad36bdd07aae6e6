#pragma once

#include "Tools/impulse/CTapeMachine.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tsm {

/// Makes the samples of an impulse: silence, then the machine's response with minimum phase, so
/// that nothing sounds before the signal does. The silence puts the peak to its sample: the
/// engine's other paths wait for it there. The end is faded out.
class CImpulseDesign {
public:
    /// False, with a text for the user in `error`, when the machine can't be aligned or its peak
    /// comes later than it shall.
    [[nodiscard]] bool make(const CImpulseSpec& spec, std::string& error);

    [[nodiscard]] const std::vector<double>& getSamples() const { return samples; }

    static constexpr std::size_t kBinCount = (std::size_t{1} << 17) + 1;

private:
    std::vector<double> samples;
};

} // namespace tsm
