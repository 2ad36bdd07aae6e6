#pragma once

#include "Core/CArray.h"
#include "Core/CObject.h"

namespace tsm {

/// A link that a document draws between two processes. Tag `audio:process-link`.
class CAudioProcessLinkDef : public CObject {
public:
    /// One end: "name" or "name/port". The name "*" is the enclosing process itself, as a source
    /// its input, as a destination its output.
    struct CEnd {
        CString name;
        std::int32_t port = 0;
        [[nodiscard]] bool isEnclosing() const { return name == "*"; }
    };

    /// Errors: a missing end, a port that is no number or negative, a port without a name, a state
    /// below -1.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info) { CObject::declareClass(info); }

    /// The set of links that this one belongs to; -1 is the set that is always there.
    [[nodiscard]] std::int32_t getStateId() const noexcept { return stateId; }
    /// The link is absent while any of these states is active.
    [[nodiscard]] const CArray<std::int32_t>& getBypassStateIds() const noexcept
    {
        return bypassStateIds;
    }
    [[nodiscard]] const CEnd& getSource() const noexcept { return source; }
    [[nodiscard]] const CEnd& getDestination() const noexcept { return destination; }

private:
    void readBypassStates();
    [[nodiscard]] CError* readState();

    std::int32_t stateId = -1;
    CArray<std::int32_t> bypassStateIds;
    CEnd source;
    CEnd destination;
};

} // namespace tsm
