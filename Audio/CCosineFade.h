#pragma once

namespace tsm {

/// The gains of a raised-cosine crossfade, by recursion: with `value` going from 0.5 to -0.5 as
/// half a cosine, the old signal has 0.5 + value and the new one 0.5 - value. Each next value is 2
/// cos(step) value - previous, by cos(x + step) + cos(x - step) = 2 cos(step) cos(x). [audio]
class CCosineFade {
public:
    /// Begins a fade whose step is pi / samples; `before` is the value of the step ahead of the
    /// first, in exact terms 0.5 cos(step).
    void start(double step, double before) noexcept;

    /// Writes the next `count` samples of the crossfade; `out` may be neither of the others.
    void mix(const double* from, const double* to, double* __restrict out, int count) noexcept
    {
        // Locals: a store to out[] could alias a member and force a reload each sample.
        double now = value;
        double former = previous;
        const double factor = twoCos;
        for (int i = 0; i < count; ++i) {
            out[i] = (0.5 + now) * from[i] + (0.5 - now) * to[i];
            const double next = factor * now - former;
            former = now;
            now = next;
        }
        value = now;
        previous = former;
    }

private:
    double value = 0.0;
    double previous = 0.0;
    double twoCos = 0.0;
};

} // namespace tsm
