#pragma once

#include "Audio/Processes/CTapeCoefficients.h"
#include "Audio/Processes/CTapeState.h"

#include <cmath>
#include <cstdint>
#include <vector>

namespace tsm {

/// One channel of either tape stage as its recurrence is written down, sample by sample, on the
/// doubled ring: the baseline of the stages.
class CPlainTape {
public:
    explicit CPlainTape(const CFlutterCoefficients& flutter)
        : ring(2 * static_cast<std::size_t>(flutter.length))
    {
        state.flutter.position = flutter.length - 1;
    }

    void process(const CTapeCoefficients& tape, const double* __restrict in, double* __restrict out,
                 int count)
    {
        // Locals: a store to out[] or the ring must not force a reload each sample.
        CTapeState s = state;
        const CTapeCoefficients c = tape;
        for (int i = 0; i < count; ++i) {
            const double fl = stepFlutter(c.flutter, s.flutter);
            const double y = stepShelf(c.shelf, in[i] * s.envelope, s);
            s.rollOff += (y - s.rollOff) * c.rollOff;
            const double g = stepDelay(c.flutter, s.flutter, y - s.rollOff, fl) * c.recGain;
            const double o = saturate(g, c.hardness) * c.wet + g * c.dry;
            if (c.hasFeedback) {
                const double ratio = (1e-10 + std::fabs(o)) / (1e-10 + std::fabs(g));
                s.envelope += (ratio - s.envelope) * c.envelope;
            }
            out[i] = o * c.makeup;
        }
        state = s;
    }

    void process(const CTapePostCoefficients& post, const double* __restrict in,
                 double* __restrict out, int count)
    {
        CTapeState s = state;
        const CTapePostCoefficients c = post;
        for (int i = 0; i < count; ++i) {
            const double fl = stepFlutter(c.flutter, s.flutter);
            const double y = stepDelay(c.flutter, s.flutter, in[i], fl);
            s.rollOff += (y - s.rollOff) * c.rollOff;
            out[i] = stepShelf(c.shelf, y - s.rollOff, s);
        }
        state = s;
    }

private:
    static double sigmoid(double u)
    {
        const double a = std::fabs(u);
        const double n = u * (u * u * (0.8785524976458703 * a + 0.9403501925936697) +
                              (2.423509618411691 * a + 2.395631787739572));
        const double d = std::fabs(u + 0.8766349762624457 * u * a) * (u * u + 2.3636579090766805) +
                         2.397102514234356;
        return n / d;
    }

    static double saturate(double x, double hardness)
    {
        if (x >= 0.0) {
            const double t = 0.999999 * hardness;
            return t >= x ? x : sigmoid((x - t) / (1.0 - t)) * (1.0 - t) + t;
        }
        const double t = -0.999999 * hardness;
        const double z = x / 0.98;
        return z >= t ? z * 0.98 : 0.98 * (sigmoid((z - t) / (t + 1.0)) * (1.0 + t) + t);
    }

    static double stepFlutter(const CFlutterCoefficients& c, CFlutterState& s)
    {
        const std::uint32_t n1 = s.noise * 30013 + 30011;
        const std::uint32_t n2 = n1 * 30013 + 30011;
        s.noise = n2 * 30013 + 30011;
        const double white =
            ((n1 & 0xffffff) + (n2 & 0xffffff) + (s.noise & 0xffffff)) * 0x1p-24 - 1.5;
        s.s0 += (white - s.s0) * c.c0;
        s.s1 += (s.s0 - s.s1) * c.c1;
        s.s2 += (s.s1 - s.s2) * c.c2;
        s.s3 += (s.s2 - s.s3) * c.c3;
        return s.s2 - s.s3;
    }

    static double stepShelf(const CShelfCoefficients& c, double x, CTapeState& s)
    {
        const double w = x + c.na1 * s.w1 + c.na2 * s.w2;
        const double y = c.b0 * w + c.b1 * s.w1 + c.b2 * s.w2;
        s.w2 = s.w1;
        s.w1 = w;
        return y;
    }

    double stepDelay(const CFlutterCoefficients& c, CFlutterState& s, double in, double fl)
    {
        double* __restrict at = ring.data();
        at[s.position] = in;
        at[s.position + c.length] = in;
        const double p = c.center + s.position + fl * c.depth;
        const int k = static_cast<int>(p);
        const double t = p - k;
        const double x0 = at[k];
        const double x1 = at[k + 1];
        const double x2 = at[k + 2];
        const double x3 = at[k + 3];
        s.position = s.position == 0 ? c.length - 1 : s.position - 1;
        return x1 + t * (0.5 * (x2 - x0) + t * (x0 - 2.5 * x1 + 2.0 * x2 - 0.5 * x3 +
                                                t * (0.5 * (x3 - x0) + 1.5 * (x1 - x2))));
    }

    CTapeState state;
    std::vector<double> ring;
};

} // namespace tsm
