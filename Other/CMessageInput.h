#pragma once

#include "Core/CObject.h"
#include "Platform/CCriticalSection.h"

namespace tsm {

class CInputStream;

/// The message that one end of the parameter interface works at, and the lock by which it works at
/// one at a time.
class CMessageInput : public CCheckedObject {
public:
    /// Reads a message's name and has the receiver's own event procedure of that name run, which
    /// reads the rest from get(). A procedure may cause another message on the same thread, which
    /// runs inside of it. Errors: damaged data, an unknown name, the procedure's.
    [[nodiscard]] CError* run(CObject& receiver, CInputStream& message);
    /// The message at work; for event procedures alone.
    [[nodiscard]] CInputStream& get() const noexcept { return *reader; }

private:
    CCriticalSection lock{4000};
    CInputStream* reader = nullptr;
};

} // namespace tsm
