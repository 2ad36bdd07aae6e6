#pragma once

#include <cstdint>

namespace tsm {

/// The system's number of this process, also behind a fork. [any]
[[nodiscard]] std::uint32_t currentProcessId() noexcept;

} // namespace tsm
