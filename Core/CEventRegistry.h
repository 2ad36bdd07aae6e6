#pragma once

#include "Core/CArray.h"
#include "Core/CObjectClassInfo.h"
#include "Platform/CCriticalSection.h"

#include <cstdint>

namespace tsm {

class CObject;

/// Who listens to whom in one instance tree, and the dispatch of events.
///
/// The registry lock guards the table of senders and is never held together with a sender's lock.
/// A sender's lock is recursive and held while its listeners' procedures run; a reference count
/// keeps the record alive between the two. Listeners are walked in the order of their addresses.
class CEventRegistry : public CCheckedObject {
public:
    CEventRegistry() = default;
    CEventRegistry(const CEventRegistry&) = delete;
    CEventRegistry& operator=(const CEventRegistry&) = delete;
    ~CEventRegistry();

    /// Enters a listener; `procName` is the procedure's name for deliveries through a bridge. [any]
    void listen(const CString& senderName, const CString& eventName, CObject& listener,
                const CEventProc& procedure, const CString& procName);
    /// Takes a listener out, also out of events that are being dispatched. [any]
    void unlisten(const CString& senderName, const CString& eventName, CObject& listener);
    /// Dispatches an event: listeners of the calling thread run before the call returns, unless
    /// `forceBridge` is set, others get `params` through the bridge of the thread that owns them;
    /// a listener without such an owner gets nothing. An event of the same sender that a procedure
    /// sends runs behind the listeners that are left of the outer one.
    /// Errors: the first one of a procedure or a bridge. [any]
    [[nodiscard]] CError* send(const CString& senderName, const CString& eventName,
                               CAttrMap& params, bool forceBridge);

private:
    struct CListener {
        CEventProc procedure;
        CString procName;
    };
    struct CDeferredCall {
        CObject* listener;
        CAttrMap* params; // the sender's, which stay until its send() returns
        CEventProc procedure;
        std::uint32_t thread;
        bool isDone;
    };
    struct CSender : CTsmMemAllocator {
        explicit CSender(const CString& senderName) : name(senderName) {}
        CString name;
        int references = 0;
        CMap<CString, CMap<CObject*, CListener>> events;
        CCriticalSection lock{4000};
        CArray<CDeferredCall, 2> calls;
        int firstLive = 0;
    };

    [[nodiscard]] CSender* acquire(const CString& senderName, bool create);
    void release(CSender& sender);
    [[nodiscard]] static CError* distribute(CSender& sender, const CString& eventName,
                                            CAttrMap& params, bool forceBridge);
    [[nodiscard]] static CError* serve(CSender& sender);
    static void dropCalls(CSender& sender, const CAttrMap& params);
    [[nodiscard]] static bool takeCall(CSender& sender, CDeferredCall& call);

    CCriticalSection lock{4000};
    CMap<CString, CSender*> senders;
};

} // namespace tsm
