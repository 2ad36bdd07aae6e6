#pragma once

#include "Audio/CAudioBlockPool.h"
#include "Audio/CCosineFade.h"
#include "Core/COwnedArray.h"

namespace tsm {

/// A delay whose length may change while it runs, by a crossfade between the two lengths.
///
/// The line is a ring of pool blocks that are taken when they are first reached, so a long delay
/// costs memory only as it fills; a block that is read before it was written holds the fill value.
/// [audio]
class CDSPModDelay : public CCheckedObject, public CTsmMemAllocator {
public:
    static constexpr int kUsualBlockSize = 512; // samples
    /// Of a delay that makes up for latency, whatever the processes around it are set to.
    static constexpr double kUsualFadeSeconds = 0.015;

    /// `blockSize` is the length of a ring block in samples, a power of two.
    explicit CDSPModDelay(CAudioBlockPool& blockPool, int blockSize = kUsualBlockSize);
    CDSPModDelay(const CDSPModDelay&) = delete;
    CDSPModDelay& operator=(const CDSPModDelay&) = delete;

    /// Samples that a change of length takes; at least 1 is used.
    void setFadeLength(int samples) noexcept;
    /// What the line gives before its input has come through. To be set before the first sample.
    void setFillValue(double value) noexcept { fillValue = value; }
    /// Asks for a delay in samples, 0 to kMaxDelay, which longer ones become. It is taken at once
    /// when no signal has passed yet, else by a crossfade. During one it waits for the end, where a
    /// later one replaces it; one equal to that being faded to cancels what waits.
    void setDelay(int samples);
    [[nodiscard]] int getDelay() const noexcept { return delay; }
    /// True until the last change of length has come to its end.
    [[nodiscard]] bool isFading() const noexcept { return fadeSteps > 0 || joinSteps > 0; }
    /// True until a sample has passed since the beginning or the last reset.
    [[nodiscard]] bool isFresh() const noexcept { return !hasSignal; }
    /// Takes up, with a fresh line, a signal that has been running without it: it passes undelayed
    /// until the line holds `samples` of it (above 0), and is crossfaded to that delay then.
    void joinSignal(int samples) noexcept;
    /// Drops the content, ends a crossfade at its target, and starts anew.
    void reset();
    /// Delays `count` samples; `in` and `out` may be the same.
    void process(const double* in, double* out, int count);

private:
    static constexpr int kMaxSlice = 256;
    // Keeps all positions within an int, beyond any latency that could be of use.
    static constexpr int kMaxDelay = 1 << 26;

    struct CSlot : CTsmMemAllocator {
        CAudioBlockRef block;
    };

    void joinLater(int samples) noexcept;
    void startFade(int samples);
    void endFade();
    void fitRing();
    void resizeRing(int needed);
    // Rare, so that it stays out of the short way through at().
    [[nodiscard, gnu::cold]] double* fill(CSlot& slot);
    [[nodiscard]] double* at(int position);
    [[nodiscard]] int back(int samples) const noexcept;
    [[nodiscard]] int sliceAt(int position, int wanted) const noexcept;
    void processSlice(const double* in, double* out, int count);
    void readPlain(double* out, int count);
    void readFading(double* out, int count);

    CAudioBlockPool& pool;
    int size;
    int order; // its logarithm to base 2
    int fadeLength = 1;
    double fillValue = 0.0;
    int delay = 0;
    int oldDelay = 0;
    int pendingDelay = -1;
    int fadeSteps = 0;
    int joinSteps = 0; // until the line holds what `pendingDelay` needs
    int joined = 0;    // samples of the joined signal that it holds
    CCosineFade fade;
    bool hasSignal = false;
    int writePosition = 0;
    COwnedArray<CSlot> ring;
};

} // namespace tsm
