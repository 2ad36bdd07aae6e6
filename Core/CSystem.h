#pragma once

#include "Core/CError.h"

#include <cstdint>

namespace tsm {

class CMessageReceiver;

/// Services that belong to no object.
class CSystem {
public:
    /// Replaces %1 to %9 in `text` by the given parameters and %% by one percent sign; any other
    /// character behind a percent sign vanishes with it, as does a number without a parameter.
    /// [any]
    [[nodiscard]] static CString formatMessage(const CString& text, const CString* const* params,
                                               int paramCount);

    /// Posts a message to the thread of `receiver`. Errors: the system's refusal. [any]
    [[nodiscard]] static CError* sendEvent(CMessageReceiver& receiver, int message,
                                           std::int64_t parameter);

    /// Tells the user of a failure where no window of ours exists: the instruction text, then all
    /// lines of the error, each with CR LF, or "<no details>" for null. Takes the error. [any]
    static void showError(CError* error);
};

} // namespace tsm
