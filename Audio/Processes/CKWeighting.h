#pragma once

#include "Core/CCheckedObject.h"

namespace tsm {

/// The frequency weighting of loudness: a shelf for the head and a high-pass (Recommendation ITU-R
/// BS.1770-4, annex 1). The standard gives the filters at 48 kHz; other rates get the same analogue
/// prototypes by the bilinear transform, with the corners where they are. [audio]
class CKWeighting : public CCheckedObject {
public:
    /// Second-order section in the standard's form, a0 = 1.
    struct CSection {
        double b0 = 1.0, b1 = 0.0, b2 = 0.0;
        double a1 = 0.0, a2 = 0.0;
    };

    /// Sets the rate in Hz (below kMinRate that counts) and drops the state.
    void prepare(double sampleRate) noexcept;
    void reset() noexcept;
    [[nodiscard]] double process(double sample) noexcept
    {
        return highPass.process(shelf.process(sample));
    }

    [[nodiscard]] const CSection& getShelf() const noexcept { return shelf.section; }
    [[nodiscard]] const CSection& getHighPass() const noexcept { return highPass.section; }

    static constexpr double kMinRate = 8000.0;

private:
    struct CFilter {
        /// Transposed direct form II.
        [[nodiscard]] double process(double in) noexcept
        {
            const double out = section.b0 * in + state1;
            state1 = section.b1 * in - section.a1 * out + state2;
            state2 = section.b2 * in - section.a2 * out;
            return out;
        }
        CSection section;
        double state1 = 0.0;
        double state2 = 0.0;
    };

    CFilter shelf;
    CFilter highPass;
};

} // namespace tsm
