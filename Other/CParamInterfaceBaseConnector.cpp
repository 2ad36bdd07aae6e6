#include "Other/CParamInterfaceBaseConnector.h"

#include "Other/CParamInterfaceBase.h"
#include "Other/CParamInterfaceClientConnector.h"

namespace tsm {

void CParamInterfaceBaseConnector::releaseLinks()
{
    {
        const CLockScope hold(lock);
        base = nullptr;
        for (const auto& client : clients) {
            client.value->forgetBaseConnector();
            onClientRemoved(client.key);
        }
        clients.clear();
    }
    CObject::releaseLinks();
}

CError* CParamInterfaceBaseConnector::processClientData(CInputStream& message)
{
    const CLockScope hold(lock);
    if (!base)
        TSM_FAIL("@tsmstr_CParamInterfaceBaseConnector_processClientData_NoBase No base object "
                 "defined.");
    TSM_TRY(base->processMessage(message));
    return nullptr;
}

void CParamInterfaceBaseConnector::setBase(CParamInterfaceBase& newBase)
{
    const CLockScope hold(lock);
    base = &newBase;
}

void CParamInterfaceBaseConnector::removeBase(const CParamInterfaceBase& formerBase)
{
    const CLockScope hold(lock);
    if (base == &formerBase)
        base = nullptr;
}

CError* CParamInterfaceBaseConnector::addClient(CParamInterfaceClientConnector& client,
                                                std::uint32_t& clientId)
{
    const CLockScope hold(lock);
    if (static_cast<std::uint32_t>(clients.getCount()) == kMaxClientId)
        TSM_FAIL("@tsmstr_CParamInterfaceBaseConnector_addClient_TooMany Too many clients.");
    do
        lastClientId = lastClientId % kMaxClientId + 1;
    while (clients.contains(lastClientId));
    clientId = lastClientId;
    clients[clientId] = &client;
    onClientAdded(clientId);
    return nullptr;
}

void CParamInterfaceBaseConnector::removeClient(std::uint32_t clientId)
{
    const CLockScope hold(lock);
    if (!clients.remove(clientId))
        return;
    onClientRemoved(clientId);
    if (base)
        base->dropClient(clientId);
}

void CParamInterfaceBaseConnector::deliverUpdates()
{
    const CLockScope hold(lock);
    if (base)
        base->deliverUpdates();
}

void CParamInterfaceBaseConnector::restoreClient(std::uint32_t clientId)
{
    const CLockScope hold(lock);
    if (base)
        base->restoreClient(clientId);
}

} // namespace tsm
