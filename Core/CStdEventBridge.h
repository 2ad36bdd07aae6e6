#pragma once

#include "Core/CObject.h"

namespace tsm {

class CUIEventBridge;

/// The object that gives its subtree a thread: listeners below it run on the thread that made it,
/// whichever thread sends the event. Tag `ui:ui-event-bridge`.
class CStdEventBridge : public CObject {
public:
    CStdEventBridge();
    ~CStdEventBridge() override;
    static void declareClass(CObjectClassInfo& info);

    /// Runs the procedure that `params` name ("listener", "listener-id", "listener-proc"). A
    /// listener that has gone, or been replaced since, is no error. On the owned thread only.
    [[nodiscard]] virtual CError* onBridgedEvent(CAttrMap& params);

private:
    CPtr<CUIEventBridge> bridge;
};

} // namespace tsm
