#pragma once

#include "Core/COutputStream.h"

namespace tsm {

/// What the parameter interface asks of the collector of the meters' data.
class CAudioInterfaceVizProvider : public CCheckedObject {
public:
    virtual ~CAudioInterfaceVizProvider() = default;

    /// One listener more, or less, to the meter of a process by its full name; from the engine's
    /// next block on. [any]
    virtual void addVizListener(const CString& processName) = 0;
    virtual void removeVizListener(const CString& processName) = 0;
    /// Writes what was measured since the last call, which is forgotten then, and has the meters
    /// measure at that rate from now on, in frames a second. Errors: the stream's. [any]
    [[nodiscard]] virtual CError* writeStream(COutputStream& stream, double rate) = 0;

protected:
    CAudioInterfaceVizProvider() = default;
    CAudioInterfaceVizProvider(const CAudioInterfaceVizProvider&) = default;
    CAudioInterfaceVizProvider& operator=(const CAudioInterfaceVizProvider&) = default;
};

} // namespace tsm
