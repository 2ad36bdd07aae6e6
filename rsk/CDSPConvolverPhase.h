#pragma once

namespace tsm::rsk {

/// A share in spreading the transforms of all convolvers of the process over time: one of eight
/// phases, that which the fewest have when it is drawn, held for the object's life.
class CDSPConvolverPhase {
public:
    static constexpr int kCount = 8;

    /// [any] Takes a lock.
    CDSPConvolverPhase();
    ~CDSPConvolverPhase();
    CDSPConvolverPhase(const CDSPConvolverPhase&) = delete;
    CDSPConvolverPhase& operator=(const CDSPConvolverPhase&) = delete;

    [[nodiscard]] int get() const noexcept { return phase; }

private:
    int phase;
};

} // namespace tsm::rsk
