#include "Other/CParamInterfaceClientConnector.h"

#include "Core/CMemoryReader.h"
#include "Core/CWriteSeqBuffer.h"
#include "Other/CParamInterfaceBaseConnector.h"
#include "Other/CParamInterfaceClient.h"

#include <utility>

namespace tsm {

void CParamInterfaceClientConnector::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
    info.addEvent("process-base-data", &CParamInterfaceClientConnector::onProcessBaseData);
}

void CParamInterfaceClientConnector::releaseLinks()
{
    if (const CParamInterfaceLink::CUse target(std::exchange(link, nullptr)); target)
        target->removeClient(clientId);
    {
        const CLockScope hold(lock);
        if (client)
            client->forgetConnector();
        client = nullptr;
        incoming.clear();
    }
    CObject::releaseLinks();
}

CError* CParamInterfaceClientConnector::notConnected() const
{
    TSM_FAIL("@tsmstr_CParamInterfaceClientConnector_send_NotConnected No base connector "
             "defined.");
}

CError* CParamInterfaceClientConnector::connect(const std::shared_ptr<CParamInterfaceLink>& target)
{
    {
        const CParamInterfaceLink::CUse use(target);
        if (!use)
            return notConnected();
        TSM_TRY(use->addClient(clientId));
    }
    link = target;
    // To itself, so that the bridge above carries it to the client's thread.
    listenObject(getFullName(), "process-base-data-proxy", "process-base-data");
    return nullptr;
}

CError* CParamInterfaceClientConnector::send(CWriteSeqBuffer& message)
{
    const CParamInterfaceLink::CUse target(link);
    if (!target)
        return notConnected();
    CByteBuffer bytes;
    message.takeData(bytes);
    CMemoryReader reader(bytes);
    TSM_TRY(target->processClientData(reader));
    return nullptr;
}

void CParamInterfaceClientConnector::setClient(CParamInterfaceClient* newClient)
{
    const CLockScope hold(lock);
    client = newClient;
}

bool CParamInterfaceClientConnector::hasIncoming()
{
    const CLockScope hold(lock);
    return !incoming.isEmpty();
}

CError* CParamInterfaceClientConnector::receive(CInterfaceBlockList& blocks)
{
    {
        const CLockScope hold(lock);
        incoming.takeAll(blocks);
        if (incoming.isEmpty())
            return nullptr;
    }
    TSM_TRY(sendEvent("process-base-data-proxy"));
    return nullptr;
}

CError* CParamInterfaceClientConnector::onProcessBaseData()
{
    const CLockScope hold(lock);
    // A listener may run a loop: the call that it is in goes on with what came meanwhile.
    if (isProcessing)
        return nullptr;
    isProcessing = true;
    CError* const error = processIncoming();
    isProcessing = false;
    if (error)
        incoming.clear();
    TSM_TRY(error);
    return nullptr;
}

CError* CParamInterfaceClientConnector::processIncoming()
{
    while (const CPtr<CInterfaceBlock> block = incoming.takeFirst()) {
        if (!client)
            TSM_FAIL("@tsmstr_CParamInterfaceClientConnector_processBaseData_NoClient No client "
                     "object defined.");
        CMemoryReader reader(block->bytes);
        TSM_TRY(client->processMessage(reader));
    }
    return nullptr;
}

} // namespace tsm
