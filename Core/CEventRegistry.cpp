#include "Core/CEventRegistry.h"

#include "Core/CObject.h"
#include "Core/CObjectEventBridge.h"
#include "Platform/CThreadId.h"

namespace tsm {

CEventRegistry::~CEventRegistry()
{
    for (const auto& entry : senders)
        delete entry.value;
}

/// The record with one reference more; null when there is none and `create` is false.
CEventRegistry::CSender* CEventRegistry::acquire(const CString& senderName, bool create)
{
    const CLockScope scope(lock);
    CSender** place = create ? &senders[senderName] : senders.find(senderName);
    if (!place)
        return nullptr;
    if (!*place)
        *place = new CSender(senderName);
    ++(*place)->references;
    return *place;
}

/// Gives a reference back. The record goes when nobody uses it and nobody listens any more.
void CEventRegistry::release(CSender& sender)
{
    const CLockScope scope(lock);
    if (--sender.references > 0 || !sender.events.isEmpty())
        return;
    senders.remove(sender.name);
    delete &sender;
}

void CEventRegistry::listen(const CString& senderName, const CString& eventName, CObject& listener,
                            const CEventProc& procedure, const CString& procName)
{
    CSender* sender = acquire(senderName, true);
    {
        const CLockScope scope(sender->lock);
        CListener& entry = sender->events[eventName][&listener];
        entry.procedure = procedure;
        entry.procName = procName;
    }
    release(*sender);
}

void CEventRegistry::unlisten(const CString& senderName, const CString& eventName,
                              CObject& listener)
{
    CSender* sender = acquire(senderName, false);
    if (!sender)
        return;
    {
        const CLockScope scope(sender->lock);
        if (auto* listeners = sender->events.find(eventName)) {
            listeners->remove(&listener);
            if (listeners->isEmpty())
                sender->events.remove(eventName);
        }
        // It may be on its way out of memory: what is queued for it must not be called.
        for (CDeferredCall& call : sender->calls)
            call.isDone |= call.listener == &listener;
    }
    release(*sender);
}

CError* CEventRegistry::send(const CString& senderName, const CString& eventName, CAttrMap& params,
                             bool forceBridge)
{
    CSender* sender = acquire(senderName, false);
    if (!sender)
        return nullptr;
    params.setText("sender", senderName);
    params.setText("event-name", eventName);
    CError* error = distribute(*sender, eventName, params, forceBridge);
    CError* served = serve(*sender);
    dropCalls(*sender, params);
    release(*sender);
    if (error && served)
        handleError(std::exchange(served, nullptr));
    TSM_TRY(error ? error : served);
    return nullptr;
}

/// Queues the calls of this thread's listeners and posts the others.
CError* CEventRegistry::distribute(CSender& sender, const CString& eventName, CAttrMap& params,
                                   bool forceBridge)
{
    const CLockScope scope(sender.lock);
    const auto* listeners = sender.events.find(eventName);
    if (!listeners)
        return nullptr;
    const std::uint32_t thread = currentThreadId();
    for (const auto& entry : *listeners) {
        CObject* owner = entry.key->findThreadOwner();
        if (!owner)
            continue;
        if (owner->getOwnerThread() == thread && !forceBridge) {
            sender.calls.add({entry.key, &params, entry.value.procedure, thread, false});
            continue;
        }
        params.setText("listener", entry.key->getFullName());
        params.setInt("listener-id", entry.key->getObjectId());
        params.setText("listener-proc", entry.value.procName);
        TSM_TRY(owner->getEventBridge()->post(params));
    }
    return nullptr;
}

/// Takes the first call of this thread out of the queue, which starts anew when none is left.
bool CEventRegistry::takeCall(CSender& sender, CDeferredCall& call)
{
    const std::uint32_t thread = currentThreadId();
    bool isFound = false;
    int firstLive = sender.calls.getCount();
    for (int i = sender.calls.getCount() - 1; i >= sender.firstLive; --i)
        if (!sender.calls[i].isDone)
            firstLive = i;
    for (int i = firstLive; i < sender.calls.getCount() && !isFound; ++i) {
        CDeferredCall& entry = sender.calls[i];
        if (entry.isDone || entry.thread != thread)
            continue;
        call = entry;
        entry.isDone = true;
        isFound = true;
    }
    sender.firstLive = firstLive;
    if (firstLive == sender.calls.getCount()) {
        sender.calls.clear();
        sender.firstLive = 0;
    }
    return isFound;
}

CError* CEventRegistry::serve(CSender& sender)
{
    for (;;) {
        const CLockScope scope(sender.lock);
        CDeferredCall call;
        if (!takeCall(sender, call))
            return nullptr;
        TSM_TRY(call.listener->callProcedure(call.procedure, *call.params));
    }
}

/// Drops what an error left of an event whose parameters are about to go.
void CEventRegistry::dropCalls(CSender& sender, const CAttrMap& params)
{
    const CLockScope scope(sender.lock);
    for (CDeferredCall& call : sender.calls)
        call.isDone |= call.params == &params;
}

} // namespace tsm
