#pragma once

#include "Tools/impulse/CTapeMachine.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tsm {

/// The responses of impulses as text for gnuplot: a line for each frequency from 10 Hz to 20 kHz, a
/// column for each impulse, in dB against 1 kHz. Measured on the samples, not taken from the
/// design.
class CResponseTable {
public:
    CResponseTable();

    void add(const CImpulseSpec& spec, const std::vector<double>& samples);
    [[nodiscard]] std::string getText() const;

    /// The magnitude of an impulse's Fourier transform at one frequency.
    [[nodiscard]] static double magnitudeAt(const std::vector<double>& samples, double rate,
                                            double hz);

private:
    static constexpr std::size_t kLineCount = 241;

    std::string heading = "Hz";
    std::vector<double> frequencies;
    std::vector<std::string> lines;
};

} // namespace tsm
