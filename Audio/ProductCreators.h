#pragma once

#include "Core/CApplication.h"

#include <span>

namespace tsm {

/// What each tag of the product's definition documents creates. [any]
[[nodiscard]] std::span<const CCreatorRow> productCreators() noexcept;

/// Starts an application as this product: its creators, its resources, and the shared tree from
/// its definition document. Errors: those of CApplication::start. [setup]
[[nodiscard]] CError* startProduct(CApplication& application);

} // namespace tsm
