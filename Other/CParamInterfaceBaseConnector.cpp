#include "Other/CParamInterfaceBaseConnector.h"

#include "Other/CParamInterfaceBase.h"

namespace tsm {

CParamInterfaceBaseConnector::CParamInterfaceBaseConnector()
    : link(std::make_shared<CParamInterfaceLink>(*this))
{
}

CParamInterfaceBaseConnector::~CParamInterfaceBaseConnector() = default;

CError* CParamInterfaceBaseConnector::init()
{
    TSM_TRY(CObject::init());
    link->open(*getRoot());
    return nullptr;
}

void CParamInterfaceBaseConnector::close()
{
    link->close();
}

void CParamInterfaceBaseConnector::releaseLinks()
{
    close();
    {
        const CLockScope hold(link->getLock());
        base = nullptr;
        for (const auto& client : clients)
            onClientRemoved(client.key);
        clients.clear();
    }
    CObject::releaseLinks();
}

CError* CParamInterfaceBaseConnector::processClientData(CInputStream& message)
{
    const CLockScope hold(link->getLock());
    if (!base)
        TSM_FAIL("@tsmstr_CParamInterfaceBaseConnector_processClientData_NoBase No base object "
                 "defined.");
    TSM_TRY(base->processMessage(message));
    return nullptr;
}

void CParamInterfaceBaseConnector::setBase(CParamInterfaceBase& newBase)
{
    const CLockScope hold(link->getLock());
    base = &newBase;
}

void CParamInterfaceBaseConnector::removeBase(const CParamInterfaceBase& formerBase)
{
    const CLockScope hold(link->getLock());
    if (base == &formerBase)
        base = nullptr;
}

CError* CParamInterfaceBaseConnector::addClient(std::uint32_t& clientId)
{
    const CLockScope hold(link->getLock());
    if (static_cast<std::uint32_t>(clients.getCount()) == kMaxClientId)
        TSM_FAIL("@tsmstr_CParamInterfaceBaseConnector_addClient_TooMany Too many clients.");
    do
        lastClientId = lastClientId % kMaxClientId + 1;
    while (clients.contains(lastClientId));
    clientId = lastClientId;
    clients.add(clientId);
    onClientAdded(clientId);
    return nullptr;
}

void CParamInterfaceBaseConnector::removeClient(std::uint32_t clientId)
{
    const CLockScope hold(link->getLock());
    if (!clients.remove(clientId))
        return;
    onClientRemoved(clientId);
    if (base)
        base->dropClient(clientId);
}

void CParamInterfaceBaseConnector::deliverUpdates()
{
    const CLockScope hold(link->getLock());
    if (base)
        base->deliverUpdates();
}

void CParamInterfaceBaseConnector::restoreClient(std::uint32_t clientId)
{
    const CLockScope hold(link->getLock());
    if (base)
        base->restoreClient(clientId);
}

} // namespace tsm
