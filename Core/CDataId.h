#pragma once

#include <cstdint>

namespace tsm {

/// The number that four characters in file order stand for at the head of a compressed block.
[[nodiscard]] consteval std::uint32_t dataId(const char (&text)[5]) noexcept
{
    std::uint32_t id = 0;
    for (int i = 3; i >= 0; --i)
        id = id << 8 | static_cast<std::uint8_t>(text[i]);
    return id;
}

inline constexpr std::uint32_t kTextDataId = dataId("dstr"); ///< one string
inline constexpr std::uint32_t kRawDataId = dataId("adat");  ///< bytes that their reader knows

} // namespace tsm
