#pragma once

#include <array>
#include <cstddef>

namespace tsm {

/// What the samples of the written file are.
enum class ESampleFormat { Float64, Float32, Int24, Int16 };

/// A row of the table of formats: the name on the command line and the bits of a whole number, 0
/// for floating point.
struct CSampleFormatRow {
    const char* name;
    ESampleFormat format;
    int integerBits;
    int bytes;
};

inline constexpr std::array kSampleFormats{CSampleFormatRow{"f64", ESampleFormat::Float64, 0, 8},
                                           CSampleFormatRow{"f32", ESampleFormat::Float32, 0, 4},
                                           CSampleFormatRow{"s24", ESampleFormat::Int24, 24, 3},
                                           CSampleFormatRow{"s16", ESampleFormat::Int16, 16, 2}};

[[nodiscard]] constexpr const CSampleFormatRow& sampleFormatRow(ESampleFormat format) noexcept
{
    return kSampleFormats[static_cast<std::size_t>(format)];
}

static_assert(sampleFormatRow(ESampleFormat::Int16).integerBits == 16 &&
              sampleFormatRow(ESampleFormat::Float64).bytes == 8);

} // namespace tsm
