#include "Core/CObjectContext.h"

#include "Core/CMap.h"

namespace tsm {
namespace {

struct CContextTable {
    CCriticalSection lock{4000};
    std::uint32_t lastId = 0;
    CMap<std::uint32_t, CObjectContext*> contexts;
};

CContextTable& contextTable()
{
    static CContextTable table;
    return table;
}

} // namespace

CObjectContext::CObjectContext()
{
    CContextTable& table = contextTable();
    const CLockScope scope(table.lock);
    id = ++table.lastId;
    table.contexts[id] = this;
}

CObjectContext::~CObjectContext()
{
    CContextTable& table = contextTable();
    const CLockScope scope(table.lock);
    table.contexts.remove(id);
}

std::int32_t CObjectContext::nextObjectId()
{
    const CLockScope scope(counterLock);
    return objectCount++;
}

CError* CObjectContext::sendTo(std::uint32_t contextId, const CString& senderName,
                               const CString& eventName, CAttrMap& params)
{
    CContextTable& table = contextTable();
    const CLockScope scope(table.lock);
    CObjectContext** context = table.contexts.find(contextId);
    if (context)
        TSM_TRY((*context)->events.send(senderName, eventName, params, false));
    return nullptr;
}

} // namespace tsm
