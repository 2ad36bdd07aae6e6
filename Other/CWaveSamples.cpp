#include "Other/CWaveSamples.h"

#include <bit>
#include <cstddef>
#include <type_traits>

namespace tsm {
namespace {

template <int Bytes, bool IsLittle>
std::conditional_t<(Bytes > 4), std::uint64_t, std::uint32_t> load(const std::uint8_t* at) noexcept
{
    std::conditional_t<(Bytes > 4), std::uint64_t, std::uint32_t> value = 0;
    for (int i = 0; i < Bytes; ++i)
        value = value << 8 | at[IsLittle ? Bytes - 1 - i : i];
    return value;
}

/// An integer of `Bytes` bytes, shifted to the top of 32 bits: the scale is then the same for all.
template <int Bytes, bool IsLittle>
double integerSample(const std::uint8_t* at) noexcept
{
    const std::uint32_t top = load<Bytes, IsLittle>(at) << (32 - 8 * Bytes);
    return static_cast<std::int32_t>(top) * 0x1p-31;
}

double unsignedSample(const std::uint8_t* at) noexcept
{
    return (*at - 128) * 0x1p-7;
}

template <bool IsLittle>
double floatSample(const std::uint8_t* at) noexcept
{
    return static_cast<double>(std::bit_cast<float>(load<4, IsLittle>(at)));
}

template <bool IsLittle>
double doubleSample(const std::uint8_t* at) noexcept
{
    return std::bit_cast<double>(load<8, IsLittle>(at));
}

template <double (*Sample)(const std::uint8_t*) noexcept>
void decodeChannel(const std::uint8_t* __restrict from, std::ptrdiff_t stride,
                   double* __restrict out, int count) noexcept
{
    for (int i = 0; i < count; ++i)
        out[i] = Sample(from + i * stride);
}

using Decoder = void (*)(const std::uint8_t*, std::ptrdiff_t, double*, int) noexcept;

template <bool IsLittle>
Decoder decoderOf(const CWaveFormat& format) noexcept
{
    if (format.isFloat)
        return format.physicalBits == 32 ? decodeChannel<floatSample<IsLittle>>
                                         : decodeChannel<doubleSample<IsLittle>>;
    switch (format.physicalBits) {
    case 8:
        return format.isUnsigned8 ? decodeChannel<unsignedSample>
                                  : decodeChannel<integerSample<1, IsLittle>>;
    case 16:
        return decodeChannel<integerSample<2, IsLittle>>;
    case 24:
        return decodeChannel<integerSample<3, IsLittle>>;
    default:
        return decodeChannel<integerSample<4, IsLittle>>;
    }
}

} // namespace

void CWaveSamples::decode(const CWaveFormat& format, const std::uint8_t* frames, int count,
                          double* const* channels, std::int64_t firstSample) noexcept
{
    const Decoder decoder =
        format.isLittleEndian ? decoderOf<true>(format) : decoderOf<false>(format);
    const int sampleBytes = format.physicalBits / 8;
    for (int channel = 0; channel < format.channelCount; ++channel)
        decoder(frames + channel * sampleBytes, format.frameSize, channels[channel] + firstSample,
                count);
}

} // namespace tsm
