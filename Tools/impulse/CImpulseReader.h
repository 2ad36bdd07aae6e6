#pragma once

#include "Tools/impulse/CTapeMachine.h"

#include <string>
#include <string_view>
#include <vector>

namespace tsm {

/// Reads the description of a set of impulses: an XML document `impulses` with a child `machine`
/// for each machine, that in turn with a child `impulse` for each of its impulses. What an impulse
/// doesn't tell is its machine's.
class CImpulseReader {
public:
    /// False, with a text for the user in `error`, for what isn't XML, for an attribute that is
    /// missing, unknown, no number or out of range, and for an id given twice.
    [[nodiscard]] static bool read(std::string_view document, std::vector<CImpulseSpec>& impulses,
                                   std::string& error);
};

} // namespace tsm
