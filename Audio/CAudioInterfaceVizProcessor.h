#pragma once

#include "Core/CError.h"

namespace tsm {

class CInputStream;

/// Receives what the meters of the engine send to a client of the parameter interface. Called on
/// the client's thread.
class CAudioInterfaceVizProcessor : public CCheckedObject {
public:
    virtual ~CAudioInterfaceVizProcessor() = default;

    /// The engine begins or ends to send; while it doesn't, silence tells nothing. [ui]
    virtual void startViz() = 0;
    virtual void stopViz() = 0;
    /// What has arrived so far is void. [ui]
    virtual void clear() = 0;
    /// Reads the answer to a request. Errors: damaged data. [ui]
    [[nodiscard]] virtual CError* readVizData(CInputStream& stream) = 0;
    /// Reads the names of the slots by which instances show each other's meters. Errors: damaged
    /// data. [ui]
    [[nodiscard]] virtual CError* readExportSlotNames(CInputStream& stream) = 0;

protected:
    CAudioInterfaceVizProcessor() = default;
    CAudioInterfaceVizProcessor(const CAudioInterfaceVizProcessor&) = default;
    CAudioInterfaceVizProcessor& operator=(const CAudioInterfaceVizProcessor&) = default;
};

} // namespace tsm
