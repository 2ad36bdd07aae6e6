#pragma once

#include <cstdint>

namespace tsm {

/// The speaker arrangements that a host wants for its buses, and what it gets.
struct CBusRequest {
    std::uint64_t input = 0;
    std::uint64_t output = 0;
    std::uint64_t sidechain = 0; // 0 without one

    /// Changes what the product can't do into the nearest that it can: at most `maxChannels` at
    /// input and output, two in the side-chain, and as many out as in if `isSymmetric`, else also
    /// mono to stereo. Tells whether the request stood as it was.
    [[nodiscard]] bool settle(int maxChannels, bool isSymmetric) noexcept;

private:
    [[nodiscard]] bool limit(int maxChannels) noexcept;
    [[nodiscard]] bool match(bool isSymmetric) noexcept;
};

} // namespace tsm
