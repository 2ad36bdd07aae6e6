#include "Other/CParamInterfaceLink.h"

namespace tsm {

namespace {

constinit CCriticalSection searchLock{4000};
constinit CParamInterfaceLink* firstOpen = nullptr;

} // namespace

CParamInterfaceLink::CUse::CUse(const std::shared_ptr<CParamInterfaceLink>& used) : link(used)
{
    if (!link)
        return;
    link->lock.enter();
    connector = link->connector;
}

CParamInterfaceLink::CUse::~CUse()
{
    if (link)
        link->lock.leave();
}

CParamInterfaceLink::CParamInterfaceLink(CParamInterfaceBaseConnector& target) noexcept
    : connector(&target)
{
}

void CParamInterfaceLink::open(const CObject& treeRoot)
{
    const CLockScope hold(searchLock);
    root = &treeRoot;
    next = firstOpen;
    firstOpen = this;
}

void CParamInterfaceLink::close()
{
    {
        const CLockScope hold(searchLock);
        for (CParamInterfaceLink** place = &firstOpen; *place; place = &(*place)->next)
            if (*place == this) {
                *place = next;
                break;
            }
        root = nullptr;
    }
    const CLockScope hold(lock);
    connector = nullptr;
}

CParamInterfaceLink::CSearch::CSearch()
{
    searchLock.enter();
}

CParamInterfaceLink::CSearch::~CSearch()
{
    searchLock.leave();
}

bool CParamInterfaceLink::CSearch::isOpen(const CObject* treeRoot) const noexcept
{
    const CParamInterfaceLink* link = firstOpen;
    while (link && link->root != treeRoot)
        link = link->next;
    return link;
}

} // namespace tsm
