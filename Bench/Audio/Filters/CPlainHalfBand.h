#pragma once

namespace tsm {

/// The recurrence sample by sample, at the raised rate: each section of each branch with a ring of
/// four inputs and four outputs.
class CPlainHalfBand {
public:
    static constexpr int kSections = 5;
    static constexpr double kSteep[] = {
        0.017201989192148732, 0.143436416471937580, 0.347900769631093840, 0.577350269189625730,
        0.810517970072601620, 0.066817741883400714, 0.239667767835860080, 0.461816363311925440,
        0.693116558427877340, 0.933859775291256300};

    /// Rounds as the recurrence is written down.
    void process(const double* in, double* out, int count)
    {
        run(in, out, count,
            [](double c, double u, double u2, double y2) { return c * (u - y2) + u2; });
    }
    /// With fused multiply-adds in the order of the fused kernels; the processor must have them.
    [[gnu::target("fma")]] void processFused(const double* in, double* out, int count)
    {
        run(
            in, out, count,
            [](double c, double u, double u2, double y2) __attribute__((target("fma"))) {
                return __builtin_fma(-c, y2, __builtin_fma(c, u, u2));
            });
    }

private:
    template <class Section>
    [[gnu::always_inline]] void run(const double* in, double* out, int count, Section section)
    {
        for (int i = 0; i < count; ++i) {
            const double a = step(0, in[i], section);
            out[i] = 0.5 * (a + late);
            late = step(1, in[i], section);
            index = (index + 3) & 3;
        }
    }
    template <class Section>
    [[gnu::always_inline]] double step(int branch, double u, Section section)
    {
        const int past = (index + 2) & 3;
        for (int s = 0; s < kSections; ++s) {
            CRing& ring = rings[branch][s];
            const double y =
                section(kSteep[branch * kSections + s], u, ring.inputs[past], ring.outputs[past]);
            ring.inputs[index] = u;
            ring.outputs[index] = y;
            u = y;
        }
        return u;
    }

    struct CRing {
        double inputs[4] = {};
        double outputs[4] = {};
    };
    CRing rings[2][kSections];
    double late = 0.0;
    int index = 3;
};

} // namespace tsm
