#include "Audio/Processes/CTapeState.h"

#include "Audio/Processes/TapeKernels.h"

#include <algorithm>

namespace tsm {

void resetTapeState(CTapeState& state, const CFlutterCoefficients& flutter) noexcept
{
    double* history = state.history;
    const std::uint32_t noise = state.flutter.noise;
    state = {};
    state.history = history;
    state.flutter.noise = noise;
    state.flutter.position = flutter.length - 1;
    if (history)
        std::fill_n(history, tapeHistoryCount(flutter.center), 0.0);
}

} // namespace tsm
