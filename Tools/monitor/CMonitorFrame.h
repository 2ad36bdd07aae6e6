#pragma once

#include "Core/CObject.h"

#include <functional>

namespace tsm {

/// Tells the program of the client's events: ticks of the connector's timer, and another history
/// of edits. Tag `monitor:frame`; the attributes `timer` and `client` name the objects.
class CMonitorFrame : public CObject {
public:
    /// Errors: nothing at the paths.
    [[nodiscard]] CError* initChilds() override;
    static void declareClass(CObjectClassInfo& info);

    std::function<CError*()> onTick;
    std::function<void()> onHistory;

private:
    [[nodiscard]] CError* onTickEvent();
    [[nodiscard]] CError* onHistoryEvent();
};

} // namespace tsm
