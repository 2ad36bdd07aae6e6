#pragma once

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
    /// The samples that have arrived in this sub-block; 0 when nothing has.
    [[nodiscard]] int getBlockLength() const noexcept
    {
        for (const CAudioLink& link : links)
            if (link.hasChannels())
                return link.getBlockLength();
        return 0;
    }
    /// Takes the blocks off the links, delays and combines them. A channel without a block is
    /// silent. With `isFilledByInput` a delay starts filled with its first sample.
    void pull(CAudioBlockPool& pool, int length, EInputCombo combo, bool isFilledByInput);
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
    struct CPortChannel {
        CAudioChannel result;
        CArray<CSource, 2> sources;
    };

    [[nodiscard]] CPortChannel& channelOf(const CAudioChannelFormat& format);
    [[nodiscard]] static CAudioBlockRef combine(const CPortChannel& channel, CAudioBlockPool& pool,
                                                int length, EInputCombo combo,
                                                bool isFilledByInput);

    int index;
    int& inputChanges;
    COwnedArray<CAudioLink> links;
    int channelCount = 0;
    CPortChannel channels[kMaxPortChannels];
};

} // namespace tsm
