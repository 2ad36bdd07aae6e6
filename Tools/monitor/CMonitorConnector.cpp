#include "Tools/monitor/CMonitorConnector.h"

#include "Core/CWriteSeqBuffer.h"

namespace tsm {

CError* CMonitorConnector::init()
{
    // Before anything else: the client's first questions pass already while its tree is made.
    if (const CAttrValue* attr = getRoot()->getAttr("monitor-watch"))
        watch = static_cast<const CWatch*>(attr->asPointer());
    TSM_TRY(CParamInterfaceClientConnectorUni::init());
    return nullptr;
}

CError* CMonitorConnector::send(CWriteSeqBuffer& message)
{
    if (!watch)
        return CParamInterfaceClientConnectorUni::send(message);
    CByteBuffer bytes;
    message.takeData(bytes);
    (*watch)(true, bytes);
    CWriteSeqBuffer copy;
    TSM_TRY(copy.write(bytes.data(), bytes.getSize()));
    TSM_TRY(CParamInterfaceClientConnectorUni::send(copy));
    return nullptr;
}

CError* CMonitorConnector::receive(CInterfaceBlockList& blocks)
{
    CInterfaceBlockList seen;
    while (CPtr<CInterfaceBlock> block = blocks.takeFirst()) {
        if (watch)
            (*watch)(false, block->bytes);
        seen.add(std::move(block));
    }
    TSM_TRY(CParamInterfaceClientConnectorUni::receive(seen));
    return nullptr;
}

} // namespace tsm
