#pragma once

#include "Audio/CAudioBlockPool.h"
#include "Audio/CAudioLink.h"
#include "Core/COwnedArray.h"

namespace tsm {

/// How several sources of one channel become one signal.
enum class EInputCombo { Sum, Mean, Maximum };

/// One input of a process: the links that end there, and the channels that result from them. Links
/// that bring the same channel are combined. [audio]
class CAudioPort : public CCheckedObject, public CTsmMemAllocator {
public:
    /// `changeCounter` is raised when a link's format changes; it outlives the port.
    CAudioPort(int portIndex, int& changeCounter) : index(portIndex), inputChanges(changeCounter) {}

    [[nodiscard]] int getIndex() const noexcept { return index; }
    [[nodiscard]] int getChannelCount() const noexcept { return channelCount; }
    /// A channel in order of the slots; its latency is that of the process's inputs.
    [[nodiscard]] CAudioChannel& getChannel(int at) noexcept { return channels[at].result; }
    [[nodiscard]] const CAudioChannel& getChannel(int at) const noexcept
    {
        return channels[at].result;
    }
    /// The channel of that slot, or null.
    [[nodiscard]] const CAudioChannel* findChannel(std::uint32_t channel) const noexcept;
    [[nodiscard]] double getSampleRate() const noexcept;

    /// A new link from a source (null: from outside) that ends here.
    CAudioLink& addLink(CAudioProcessBase* source, int sourcePort);
    void removeLink(CAudioLink& link);
    [[nodiscard]] const COwnedArray<CAudioLink>& getLinks() const noexcept { return links; }
    void raiseInputChange() noexcept { ++inputChanges; }

    /// The largest latency among all links.
    [[nodiscard]] int findLatency() const noexcept;
    /// Brings the channels and delays up to date with the links' formats; tells whether channels or
    /// their groups are others than before.
    [[nodiscard]] bool rebuild(CAudioBlockPool& pool, int inputLatency);
    /// The first link that has channels, by which a sub-block's length is told; null for none.
    [[nodiscard]] const CAudioLink* findUsedLink() const noexcept;
    /// Takes the block of a channel off its links, delayed and combined: zeros when none has come.
    /// With `isFilledByInput` a delay starts filled with its first sample.
    [[nodiscard]] CAudioBlockRef take(int at, CAudioBlockPool& pool, int length, EInputCombo combo,
                                      bool isFilledByInput)
    {
        const CPortChannel& channel = channels[at];
        CAudioBlockRef block =
            channel.sole
                ? channel.sole->takeInTime(channel.soleIndex, pool, length, isFilledByInput)
                : combine(sources[at], pool, length, combo, isFilledByInput);
        return block ? std::move(block) : pool.takeFilled(length, 0.0);
    }
    /// Takes the blocks of all channels.
    void pull(CAudioBlockPool& pool, int length, EInputCombo combo, bool isFilledByInput)
    {
        for (int i = 0; i < channelCount; ++i)
            channels[i].result.buffer = take(i, pool, length, combo, isFilledByInput);
    }
    /// The only link, if it brings the port's channels as they are and without delay; else null.
    [[nodiscard]] CAudioLink* findStraightLink() const noexcept;
    /// Drops the blocks of this sub-block.
    void release() noexcept
    {
        for (int i = 0; i < channelCount; ++i)
            channels[i].result.buffer.reset();
    }
    void resetDelays();

private:
    struct CSource {
        CAudioLink* link;
        int index; // of the channel in the link's format
    };
    using CSources = CArray<CSource, 2>;
    struct CPortChannel {
        CAudioChannel result;
        CAudioLink* sole = nullptr; // the one source, where there is just one
        int soleIndex = 0;
    };

    [[nodiscard]] CSources& sourcesOf(const CAudioChannelFormat& format);
    [[nodiscard]] static CAudioBlockRef combine(const CSources& sources, CAudioBlockPool& pool,
                                                int length, EInputCombo combo,
                                                bool isFilledByInput);

    int index;
    int channelCount = 0;
    COwnedArray<CAudioLink> links;
    CPortChannel channels[kMaxPortChannels];
    CSources sources[kMaxPortChannels]; // of the channel at the same place
    int& inputChanges;
};

} // namespace tsm
