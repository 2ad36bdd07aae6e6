#pragma once

namespace tsm {

/// Base of what a filter keeps for one channel. Empty.
class CDCDAWContextWorkspace {};

/// A half-band low-pass of one channel: two chains of allpass sections in z^-2, of which the second
/// is heard one sample late (Regalia, Mitra and Vaidyanathan, "The digital all-pass filter: a
/// versatile signal processing building block", 1988). Its output is half the sum of both.
class CDCDAWFilterWorkspace : public CDCDAWContextWorkspace {
public:
    static constexpr int kMaxSections = 8;

    /// `branches` has `sections` coefficients (1 to 8) of the first chain, then as many of the
    /// second, each in the order in which a sample meets them. The state is clear. [any]
    CDCDAWFilterWorkspace(const double* branches, int sections) noexcept;

    /// Clears the state and keeps the coefficients. [audio]
    void reset() noexcept;
    /// Filters `count` samples; `out` may be `in`. [audio] No allocation.
    void process(const double* in, double* out, int count) noexcept { run(*this, in, out, count); }

private:
    // Both branches side by side.
    typedef double CBranches __attribute__((vector_size(16)));

    using CRun = void (*)(CDCDAWFilterWorkspace& workspace, const double* in, double* out,
                          int count);

    template <int Sections>
    static void runSections(CDCDAWFilterWorkspace& workspace, const double* in, double* out,
                            int count);

    CRun run;
    CBranches coefficients[kMaxSections];
    // Of the sample before last and of the last one, by turns: the input and what each section made
    // of it. A section's past input is the past output of the one before.
    CBranches past[2][kMaxSections + 1];
    double lateBranch; // the second chain's last output
    int turn;          // which of both is the sample before last
};

} // namespace tsm
