#pragma once

#include "Core/CCheckedObject.h"

namespace tsm {

/// How a host lays out the samples of a bus: a buffer for each channel, or one buffer with the
/// channels of a frame side by side.
struct CHostLayout {
    int channelCount = 0;
    bool isDouble = true; // 64-bit samples, else 32-bit ones
    bool isInterleaved = false;

    bool operator==(const CHostLayout&) const = default;
};

/// The samples that a host hands over, as the engine reads them. Borrows the host's buffers.
/// [audio] No allocation, no lock.
class CHostInput : public CCheckedObject {
public:
    /// `buffers` points to a pointer for each channel, or to one when interleaved; it and they may
    /// be null.
    CHostInput(const void* const* hostBuffers, const CHostLayout& hostLayout) noexcept
        : buffers(hostBuffers), layout(hostLayout)
    {
    }

    [[nodiscard]] int getChannelCount() const noexcept { return layout.channelCount; }
    /// Converts `count` samples of a channel, from `frame` on. A channel without a buffer reads as
    /// zeros, and so does each sample that is not finite: one such sample would stay in every
    /// recursive filter for good.
    void read(int channel, int frame, double* out, int count) const noexcept;

private:
    const void* const* buffers;
    CHostLayout layout;
};

/// The buffers into which a host wants its samples. Borrows them; channels without a buffer are
/// skipped. [audio] No allocation, no lock.
class CHostOutput : public CCheckedObject {
public:
    CHostOutput(void* const* hostBuffers, const CHostLayout& hostLayout) noexcept
        : buffers(hostBuffers), layout(hostLayout)
    {
    }

    [[nodiscard]] int getChannelCount() const noexcept { return layout.channelCount; }
    /// Whether all samples are finite in the host's format.
    [[nodiscard]] bool canHold(const double* samples, int count) const noexcept;
    /// Converts `count` samples into a channel, from `frame` on.
    void write(int channel, int frame, const double* samples, int count) const noexcept;
    /// Writes zeros.
    void silence(int channel, int frame, int count) const noexcept;

private:
    void* const* buffers;
    CHostLayout layout;
};

} // namespace tsm
