#include "Core/CStdEventBridge.h"

#include "Core/CUIEventBridge.h"

namespace tsm {

CStdEventBridge::CStdEventBridge() : bridge(new CUIEventBridge(*this))
{
    ownThread(bridge.get());
}

CStdEventBridge::~CStdEventBridge() = default;

void CStdEventBridge::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

CError* CStdEventBridge::onBridgedEvent(CAttrMap& params)
{
    CObject* listener = findObject(params.getString("listener"));
    if (!listener || listener->getObjectId() != params.getInt("listener-id"))
        return nullptr;
    const CString procedure = params.getString("listener-proc");
    TSM_TRY(listener->runEvent(procedure, params));
    return nullptr;
}

} // namespace tsm
