#pragma once

#include <chrono>
#include <cstdint>

namespace tsm {

/// A bar on standard error for work that takes long; silent when that is no terminal, and for the
/// first half second, so that short work stays quiet.
class CProgressBar {
public:
    /// `total` is the count that stands for the whole work.
    explicit CProgressBar(std::int64_t total);
    /// Wipes the bar away.
    ~CProgressBar();
    CProgressBar(const CProgressBar&) = delete;
    CProgressBar& operator=(const CProgressBar&) = delete;

    /// Draws the bar, at most ten times a second.
    void update(std::int64_t done);

private:
    using CClock = std::chrono::steady_clock;

    void draw(std::int64_t done) const;

    std::int64_t whole;
    bool isTerminal;
    bool isShown = false;
    CClock::time_point nextDraw;
};

} // namespace tsm
