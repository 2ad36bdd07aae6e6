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
        : source(from), destination(to), sourcePort(fromPort)
    {
    }
    CAudioLink(const CAudioLink&) = delete;
    CAudioLink& operator=(const CAudioLink&) = delete;

    /// Hands a format on; the destination hears of it only if it differs from the present one.
    void publish(const CAudioFormat& newFormat);
    [[nodiscard]] const CAudioFormat& getFormat() const noexcept { return format; }
    /// Whether the format has any.
    [[nodiscard]] bool hasChannels() const noexcept { return isUsed; }

    /// Hands a block on, for the channel at `index` of the format.
    void put(int index, CAudioBlockRef block, int length) noexcept
    {
        CAudioLink& link = end ? *end : *this;
        link.lanes[index].block = std::move(block);
        link.blockLength = length;
    }
    /// The same for all channels of the format; the given places are empty afterwards.
    void putAll(CAudioBlockRef* const* blocks, int count, int length) noexcept
    {
        CAudioLink& link = end ? *end : *this;
        for (int i = 0; i < count; ++i)
            link.lanes[i].block = std::move(*blocks[i]);
        link.blockLength = length;
    }
    /// From here on blocks go to another link of the same format, or to where that one leads; see
    /// CAudioGraphSteps.
    void leadTo(CAudioLink& next) noexcept { end = next.end ? next.end : &next; }
    /// Ends that, as if all blocks had come by.
    void endHere() noexcept;
    /// Takes the block out behind its delay, `length` samples; empty when none has come. With
    /// `isFilledByInput` a delay starts filled with its first sample.
    [[nodiscard]] CAudioBlockRef takeInTime(int index, CAudioBlockPool& pool, int length,
                                            bool isFilledByInput)
    {
        CLane& lane = lanes[index];
        CAudioBlockRef block = std::move(lane.block);
        // A block of another length comes from a part of the graph that runs at another rate.
        if (!block || blockLength != length)
            return {};
        lane.hasPassed = true;
        return lane.delay ? delayed(lane, std::move(block), pool, length, isFilledByInput)
                          : std::move(block);
    }
    [[nodiscard]] int getBlockLength() const noexcept { return blockLength; }
    /// Drops blocks that nobody has taken.
    void clear() noexcept;

    [[nodiscard]] CAudioProcessBase* getSource() const noexcept { return source; }
    [[nodiscard]] int getSourcePort() const noexcept { return sourcePort; }
    [[nodiscard]] CAudioPort& getDestination() const noexcept { return destination; }

    /// The delay that keeps the channel at `index` in time with the others; null for none.
    [[nodiscard]] CDSPModDelay* getDelay(int index) const noexcept
    {
        return lanes[index].delay.get();
    }
    /// Whether a channel has a delay.
    [[nodiscard]] bool hasDelay() const noexcept;
    /// Brings the delays up to date: `inputLatency` less each channel's own. A channel whose signal
    /// is running gets, changes and loses its delay by a crossfade, and never by a jump.
    void fitDelays(CAudioBlockPool& pool, int inputLatency);
    void resetDelays();

private:
    /// What is on its way for one channel of the format.
    struct CLane {
        CAudioBlockRef block;
        CPtr<CDSPModDelay> delay;
        std::uint32_t channel = 0; // which one has passed here so far
        bool hasPassed = false;    // since the beginning or the last reset

        void resetDelay();
    };

    void fitDelay(CAudioBlockPool& pool, int index, int wanted);
    [[nodiscard]] static CAudioBlockRef delayed(CLane& lane, CAudioBlockRef block,
                                                CAudioBlockPool& pool, int length,
                                                bool isFilledByInput);

    // What a steady sub-block reads comes first and close together: a graph has many links, and
    // its other work pushes them out of the nearest cache each time.
    CAudioProcessBase* source;
    CAudioPort& destination;
    int sourcePort;
    int blockLength = 0;
    CAudioLink* end = nullptr;     // where blocks go; null if that is here
    bool isUsed = false;           // the format has channels
    CLane lanes[kMaxPortChannels]; // by position of the channel
    CAudioFormat format;
    double delayRate = 0.0; // what the delays hold has this rate
};

} // namespace tsm
