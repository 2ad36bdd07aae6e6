#pragma once

#include <cstdint>

namespace tsm {

/// Little-endian numbers at any address. Data read through these may come from anywhere; the caller
/// has checked that the bytes exist.

[[nodiscard]] constexpr std::uint16_t readU16(const std::uint8_t* at) noexcept
{
    return static_cast<std::uint16_t>(at[0] | at[1] << 8);
}

[[nodiscard]] constexpr std::uint32_t readU32(const std::uint8_t* at) noexcept
{
    return static_cast<std::uint32_t>(at[0]) | static_cast<std::uint32_t>(at[1]) << 8 |
           static_cast<std::uint32_t>(at[2]) << 16 | static_cast<std::uint32_t>(at[3]) << 24;
}

} // namespace tsm
