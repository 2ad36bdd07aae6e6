#pragma once

#include "Audio/CAudioChannel.h"
#include "Audio/CDSPModDelay.h"
#include "Core/CPtr.h"

namespace tsm {

class CAudioPort;
class CAudioProcessBase;

/// A connection from one process's output to one input port of another: the format that travels
/// along it, and in each sub-block the blocks. Owned by the port that it ends in. [audio]
class CAudioLink : public CCheckedObject, public CTsmMemAllocator {
public:
    /// `source` is null for a signal from outside of the graph.
    CAudioLink(CAudioProcessBase* from, int fromPort, CAudioPort& to)
        : source(from), sourcePort(fromPort), destination(to)
    {
    }
    CAudioLink(const CAudioLink&) = delete;
    CAudioLink& operator=(const CAudioLink&) = delete;

    /// Hands a format on; the destination hears of it only if it differs from the present one.
    void publish(const CAudioFormat& newFormat);
    [[nodiscard]] const CAudioFormat& getFormat() const noexcept { return format; }

    /// Hands a block on, for the channel at `index` of the format.
    void put(int index, CAudioBlockRef block, int length) noexcept
    {
        blocks[index] = std::move(block);
        blockLength = length;
    }
    /// Takes the block out; empty when none has come.
    [[nodiscard]] CAudioBlockRef take(int index) noexcept { return std::move(blocks[index]); }
    /// Takes the block out behind its delay, `length` samples; empty when none has come. With
    /// `isFilledByInput` a delay starts filled with its first sample.
    [[nodiscard]] CAudioBlockRef takeInTime(int index, CAudioBlockPool& pool, int length,
                                            bool isFilledByInput);
    [[nodiscard]] int getBlockLength() const noexcept { return blockLength; }
    /// Drops blocks that nobody has taken.
    void clear() noexcept;

    [[nodiscard]] CAudioProcessBase* getSource() const noexcept { return source; }
    [[nodiscard]] int getSourcePort() const noexcept { return sourcePort; }
    [[nodiscard]] CAudioPort& getDestination() const noexcept { return destination; }

    /// The delay that keeps the channel at `index` in time with the others; null for none.
    [[nodiscard]] CDSPModDelay* getDelay(int index) const noexcept
    {
        return delays[index].delay.get();
    }
    /// Brings the delays up to date: `inputLatency` less each channel's own. A channel whose signal
    /// is running gets, changes and loses its delay by a crossfade, and never by a jump.
    void fitDelays(CAudioBlockPool& pool, int inputLatency);
    void resetDelays();

private:
    struct CLinkDelay {
        CPtr<CDSPModDelay> delay;
        std::uint32_t channel = 0; // which one has passed here so far
        bool hasPassed = false;    // since the beginning or the last reset
    };

    void fitDelay(CAudioBlockPool& pool, int index, int wanted);
    CAudioProcessBase* source;
    int sourcePort;
    CAudioPort& destination;
    CAudioFormat format;
    CAudioBlockRef blocks[kMaxPortChannels];
    int blockLength = 0;
    CLinkDelay delays[kMaxPortChannels]; // by position of the channel
    double delayRate = 0.0;              // what the delays hold has this rate
};

} // namespace tsm
