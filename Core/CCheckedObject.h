#pragma once

namespace tsm {

/// The empty root of the framework's classes: one place to hang a check on every object.
class CCheckedObject {};

} // namespace tsm
