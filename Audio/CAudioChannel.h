#pragma once

#include "Audio/CAudioBlock.h"

#include <cstdint>

namespace tsm {

/// Channels on one port, at the most.
inline constexpr int kMaxPortChannels = 16;
/// Samples in a sub-block, at the most.
inline constexpr int kMaxSubBlock = 512;

/// What is known of one channel of a signal, without its samples.
struct CAudioChannelFormat {
    std::uint32_t channel = 0; // slot, 0 to 15
    std::uint32_t group = 0;   // channel group
    std::int32_t latency = 0;  // samples since the graph's input, at the signal's own rate
    bool operator==(const CAudioChannelFormat&) const = default;
};

/// One channel of a signal with the block of the running sub-block.
struct CAudioChannel : CAudioChannelFormat {
    CAudioBlockRef buffer;
};

/// All channels of a signal, in order of their slots.
struct CAudioFormat {
    double sampleRate = 0.0; // Hz; 0 before anything was published
    int channelCount = 0;
    CAudioChannelFormat channels[kMaxPortChannels];

    void add(const CAudioChannelFormat& channel) noexcept
    {
        if (channelCount < kMaxPortChannels)
            channels[channelCount++] = channel;
    }
    [[nodiscard]] bool operator==(const CAudioFormat& other) const noexcept
    {
        if (sampleRate != other.sampleRate || channelCount != other.channelCount)
            return false;
        for (int i = 0; i < channelCount; ++i)
            if (channels[i] != other.channels[i])
                return false;
        return true;
    }
};

} // namespace tsm
