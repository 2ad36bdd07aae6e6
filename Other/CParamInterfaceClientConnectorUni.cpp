#include "Other/CParamInterfaceClientConnectorUni.h"

#include "Other/CParamInterfaceBaseConnector.h"

namespace tsm {

void CParamInterfaceClientConnectorUni::declareClass(CObjectClassInfo& info)
{
    CParamInterfaceClientConnector::declareClass(info);
    info.addAttr("fps", &CParamInterfaceClientConnectorUni::onFps);
    info.addEvent("timer", &CParamInterfaceClientConnectorUni::onTimer);
}

CError* CParamInterfaceClientConnectorUni::init()
{
    TSM_TRY(CParamInterfaceClientConnector::init());
    std::shared_ptr<CParamInterfaceLink> target;
    TSM_TRY(findLink(target));
    TSM_TRY(connect(target));
    return nullptr;
}

CError*
CParamInterfaceClientConnectorUni::findLink(std::shared_ptr<CParamInterfaceLink>& target) const
{
    const CParamInterfaceLink::CSearch search;
    CParamInterfaceBaseConnector* found = nullptr;
    TSM_TRY(findBaseRoot(search).findObjectChecked(found, getAttrString("base-connector")));
    target = found->getLink();
    return nullptr;
}

CObject&
CParamInterfaceClientConnectorUni::findBaseRoot(const CParamInterfaceLink::CSearch& search) const
{
    const CAttrValue* const attr = getRoot()->getAttr("BaseConnectorRootPtr");
    auto* const field = attr ? static_cast<CObject* const*>(attr->asPointer()) : nullptr;
    return field && search.isOpen(*field) ? **field : *getRoot();
}

void CParamInterfaceClientConnectorUni::removeChild(CObject& child)
{
    if (&child == timer)
        timer = nullptr;
    CParamInterfaceClientConnector::removeChild(child);
}

CError* CParamInterfaceClientConnectorUni::onFps(CAttrValue& value)
{
    if (timer) {
        TSM_TRY(timer->setAttr("fps", value, true));
        return nullptr;
    }
    if (value.getType() == EAttrType::None)
        return nullptr;
    CAttrMap attrs;
    attrs["fps"] = value;
    TSM_TRY(createChild(timer, getAttrString("timer-tag"), "timer", false, &attrs));
    listenObject(timer->getFullName(), "tick", "timer");
    return nullptr;
}

CError* CParamInterfaceClientConnectorUni::onTimer()
{
    CInterfaceBlockList blocks;
    // A client that is slower than its timer finds the rest in the queue, which is bounded.
    if (!hasIncoming())
        if (const CParamInterfaceLink::CUse source(getLink()); source)
            source->takeBlocks(getClientId(), blocks);
    TSM_TRY(receive(blocks));
    return nullptr;
}

} // namespace tsm
