#include "Audio/Filters/CDCDAWFilterWorkspace.h"

#include <cassert>
#include <cstring>

namespace tsm {

template <int Sections>
void CDCDAWFilterWorkspace::runSections(CDCDAWFilterWorkspace& workspace, const double* in,
                                        double* out, int count)
{
    CBranches c[Sections];
    CBranches even[Sections + 1];
    CBranches odd[Sections + 1];
    std::memcpy(c, workspace.coefficients, sizeof c);
    std::memcpy(even, workspace.past[workspace.turn], sizeof even);
    std::memcpy(odd, workspace.past[1 - workspace.turn], sizeof odd);
    double late = workspace.lateBranch;

    const auto step = [&](CBranches* beforeLast, double x) {
        CBranches input = {x, x};
        CBranches pastInput = beforeLast[0];
        beforeLast[0] = input;
        for (int s = 0; s < Sections; ++s) {
            const CBranches y = c[s] * (input - beforeLast[s + 1]) + pastInput;
            pastInput = beforeLast[s + 1];
            beforeLast[s + 1] = y;
            input = y;
        }
        const double sample = 0.5 * (input[0] + late);
        late = input[1];
        return sample;
    };
    int i = 0;
    for (; i + 2 <= count; i += 2) {
        out[i] = step(even, in[i]);
        out[i + 1] = step(odd, in[i + 1]);
    }
    if (i < count)
        out[i] = step(even, in[i]);

    std::memcpy(workspace.past[workspace.turn], even, sizeof even);
    std::memcpy(workspace.past[1 - workspace.turn], odd, sizeof odd);
    workspace.lateBranch = late;
    workspace.turn ^= count & 1;
}

CDCDAWFilterWorkspace::CDCDAWFilterWorkspace(const double* branches, int sections) noexcept
{
    assert(sections >= 1 && sections <= kMaxSections);
    static constexpr CRun kRuns[kMaxSections] = {
        &runSections<1>, &runSections<2>, &runSections<3>, &runSections<4>,
        &runSections<5>, &runSections<6>, &runSections<7>, &runSections<8>,
    };
    run = kRuns[sections - 1];
    for (int i = 0; i < kMaxSections; ++i)
        coefficients[i] =
            i < sections ? CBranches{branches[i], branches[sections + i]} : CBranches{0.0, 0.0};
    reset();
}

void CDCDAWFilterWorkspace::reset() noexcept
{
    std::memset(past, 0, sizeof past);
    lateBranch = 0.0;
    turn = 0;
}

} // namespace tsm
