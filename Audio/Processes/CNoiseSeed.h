#pragma once

#include <cstdint>

namespace tsm {

/// The process-wide counter that noise generators start from.
class CNoiseSeed {
public:
    /// The next seed, 0 to 0x7fffffff. [any] Takes a lock for the length of an increment.
    [[nodiscard]] static std::uint32_t draw();
};

} // namespace tsm
