#include "Core/CNotifyServer.h"

#include "Core/CObjectContext.h"

namespace tsm {
namespace {

CError* dispatch(std::uint32_t contextId, const CString& senderName, const CString& eventName,
                 CAttrMap& params)
{
    TSM_TRY(CObjectContext::sendTo(contextId, senderName, eventName, params));
    return nullptr;
}

} // namespace

void CNotifyServer::notifyContext(std::uint32_t contextId, const CString& senderName,
                                  const CString& eventName, CAttrMap& params)
{
    handleError(dispatch(contextId, senderName, eventName, params));
}

} // namespace tsm
