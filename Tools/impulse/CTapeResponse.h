#pragma once

#include "Tools/impulse/CTapeMachine.h"

#include <cstddef>
#include <vector>

namespace tsm {

/// The magnitude of a machine's response, from record input to replay output, at low level.
///
/// Record and replay equalisation to the standard cancel each other and the rise of a head's
/// voltage with frequency. What remains is the product of the losses, of the amplifiers' cut-offs
/// and of the record amplifier's lead network, a zero and a pole, that a technician sets until a
/// high frequency reads as loud as 1 kHz.
class CTapeResponse {
public:
    static constexpr double kReferenceHz = 1000.0;

    /// `binCount` magnitudes from 0 Hz to half the rate, 1.0 at 1 kHz. False when no setting of
    /// the lead network reaches the wanted level.
    [[nodiscard]] bool make(const CTapeMachine& machine, double rate, std::size_t binCount);

    [[nodiscard]] const std::vector<double>& getMagnitudes() const { return magnitudes; }
    /// Between the bins on a straight line.
    [[nodiscard]] double at(double hz) const;

private:
    void makeLosses(const CTapeMachine& machine);
    [[nodiscard]] bool align(const CTapeMachine& machine);

    std::vector<double> magnitudes;
    double binHz = 0.0;
};

} // namespace tsm
