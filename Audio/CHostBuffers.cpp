#include "Audio/CHostBuffers.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace tsm {

namespace {

/// A channel's samples within a buffer: the first one wanted, and the way to the next.
template <class Sample>
struct CStrided {
    Sample* first;
    std::ptrdiff_t step;
};

template <class Sample, class Buffers>
CStrided<Sample> locate(Buffers buffers, const CHostLayout& layout, int channel, int frame) noexcept
{
    const int bufferIndex = layout.isInterleaved ? 0 : channel;
    if (!buffers || !buffers[bufferIndex])
        return {nullptr, 0};
    auto* const samples = static_cast<Sample*>(buffers[bufferIndex]);
    if (!layout.isInterleaved)
        return {samples + frame, 1};
    const std::ptrdiff_t step = layout.channelCount;
    return {samples + frame * step + channel, step};
}

template <class Sample>
void readSamples(CStrided<const Sample> in, double* __restrict out, int count) noexcept
{
    constexpr Sample kLargest = std::numeric_limits<Sample>::max();
    const auto read = [&](std::ptrdiff_t step) {
        for (int i = 0; i < count; ++i) {
            const Sample sample = in.first[i * step];
            out[i] = std::abs(sample) <= kLargest ? static_cast<double>(sample) : 0.0;
        }
    };
    // The compiler makes a faster loop of the usual step if it sees it.
    if (in.step == 1)
        read(1);
    else
        read(in.step);
}

template <class Sample>
void writeSamples(CStrided<Sample> out, const double* __restrict samples, int count) noexcept
{
    for (int i = 0; i < count; ++i)
        out.first[i * out.step] = static_cast<Sample>(samples[i]);
}

template <class Sample>
void zeroSamples(CStrided<Sample> out, int count) noexcept
{
    for (int i = 0; i < count; ++i)
        out.first[i * out.step] = Sample(0);
}

/// Calls `work` with a value of the host's sample type.
template <class Work>
void withSampleType(const CHostLayout& layout, Work work) noexcept
{
    if (layout.isDouble)
        work(double());
    else
        work(float());
}

} // namespace

void CHostInput::read(int channel, int frame, double* out, int count) const noexcept
{
    withSampleType(layout, [&](auto type) {
        using Sample = decltype(type);
        const auto in = locate<const Sample>(buffers, layout, channel, frame);
        if (in.first)
            readSamples<Sample>(in, out, count);
        else
            std::fill_n(out, count, 0.0);
    });
}

bool CHostOutput::canHold(const double* samples, int count) const noexcept
{
    const double largest = layout.isDouble ? std::numeric_limits<double>::max()
                                           : static_cast<double>(std::numeric_limits<float>::max());
    // The bits of positive numbers are ordered as the numbers are, and not-a-numbers stand above
    // all. In whole numbers the compiler can look at several samples at once.
    const auto limit = std::bit_cast<std::int64_t>(largest);
    std::int64_t room = 0;
    for (int i = 0; i < count; ++i)
        room |= limit - std::bit_cast<std::int64_t>(std::abs(samples[i]));
    return room >= 0;
}

void CHostOutput::write(int channel, int frame, const double* samples, int count) const noexcept
{
    withSampleType(layout, [&](auto type) {
        const auto out = locate<decltype(type)>(buffers, layout, channel, frame);
        if (out.first)
            writeSamples(out, samples, count);
    });
}

void CHostOutput::silence(int channel, int frame, int count) const noexcept
{
    withSampleType(layout, [&](auto type) {
        const auto out = locate<decltype(type)>(buffers, layout, channel, frame);
        if (out.first)
            zeroSamples(out, count);
    });
}

} // namespace tsm
