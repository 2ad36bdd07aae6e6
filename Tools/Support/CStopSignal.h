#pragma once

namespace tsm {

/// While one lives, the signals that end a program (interrupt, termination, hang-up) only set a
/// mark, so that work under way can take back what it has begun. Only one at a time.
class CStopSignal {
public:
    CStopSignal();
    /// The signals act as usual again.
    ~CStopSignal();
    CStopSignal(const CStopSignal&) = delete;
    CStopSignal& operator=(const CStopSignal&) = delete;

    /// The signal that has come, or 0. [any]
    [[nodiscard]] static int getRaised() noexcept;
};

} // namespace tsm
