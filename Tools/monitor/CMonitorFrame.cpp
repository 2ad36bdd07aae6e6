#include "Tools/monitor/CMonitorFrame.h"

namespace tsm {

void CMonitorFrame::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
    info.addEvent("tick", &CMonitorFrame::onTickEvent);
    info.addEvent("history", &CMonitorFrame::onHistoryEvent);
}

CError* CMonitorFrame::initChilds()
{
    TSM_TRY(CObject::initChilds());
    CTarget<CObject*> timer;
    CTarget<CObject*> client;
    TSM_TRY(findObjectByAttr(timer, "timer"));
    TSM_TRY(findObjectByAttr(client, "client"));
    listenObject(timer->getFullName(), "tick", "tick");
    listenObject(client->getFullName(), "undo-history-changed", "history");
    return nullptr;
}

CError* CMonitorFrame::onTickEvent()
{
    if (onTick)
        TSM_TRY(onTick());
    return nullptr;
}

CError* CMonitorFrame::onHistoryEvent()
{
    if (onHistory)
        onHistory();
    return nullptr;
}

} // namespace tsm
