#pragma once

#include "Core/CObject.h"
#include "Other/CInterfaceBlock.h"
#include "Other/CParamInterfaceLink.h"

namespace tsm {

class CInputStream;
class CParamInterfaceBase;

/// Where the clients of one instance's parameter interface come in: it hands their messages to the
/// base, and the base's to them. It lives with the instance. Clients may outlive it: they reach it
/// through its link.
///
/// The link's lock is held while the base works at a client's message, so that clients on several
/// threads take turns; nothing but clients, and the base as it comes and goes, wants it.
class CParamInterfaceBaseConnector : public CObject {
public:
    /// In place of a client's number: all clients.
    static constexpr std::uint32_t kAllClients = 0xFFFFFFFF;
    /// Listeners and steps have the number of their client in the upper half of their own.
    [[nodiscard]] static constexpr std::uint32_t clientOf(std::uint32_t id) noexcept
    {
        return id >> 16;
    }
    static constexpr std::uint32_t kMaxClientId = 0xFFFF;

    CParamInterfaceBaseConnector();
    ~CParamInterfaceBaseConnector() override;

    static void declareClass(CObjectClassInfo& info) { CObject::declareClass(info); }
    [[nodiscard]] CError* init() override;
    void releaseLinks() override;

    /// Shuts clients out for good, before the instance ends: from here on they get an error for
    /// what they send, and nothing is at work any more. Not inside of a message. [control]
    void close();
    /// What clients keep.
    [[nodiscard]] const std::shared_ptr<CParamInterfaceLink>& getLink() const noexcept
    {
        return link;
    }

    /// Has the base take one message from a client, at once. Errors: no base, damaged data, an
    /// unknown message, the base's. [ui]
    [[nodiscard]] CError* processClientData(CInputStream& message);
    /// Sends a block to a client's queue; one that isn't known gets nothing, and an empty block
    /// goes nowhere. [any] Waits for a lock that is held for a few instructions only.
    virtual void send(std::uint32_t clientId, CPtr<CInterfaceBlock> block) = 0;
    /// Moves a client's queue, with all that has happened so far, to the end of `blocks`. [ui]
    virtual void takeBlocks(std::uint32_t clientId, CInterfaceBlockList& blocks) = 0;

    /// Names the base, borrowed, in place of a former one. [setup]
    void setBase(CParamInterfaceBase& newBase);
    /// Forgets a base that ends. Once it returns, no message is at work there. [control]
    void removeBase(const CParamInterfaceBase& formerBase);
    /// Enters a client, which leaves before it goes, and gives it its number. Errors: no number is
    /// left. [ui]
    [[nodiscard]] CError* addClient(std::uint32_t& clientId);
    /// Drops a client with its queue, and all that it has left at the base. [ui]
    void removeClient(std::uint32_t clientId);

protected:
    /// A client comes, or goes; under the lock.
    virtual void onClientAdded(std::uint32_t clientId) = 0;
    virtual void onClientRemoved(std::uint32_t clientId) = 0;
    /// Has the base put into the queues what waits for a thread that may tell it.
    void deliverUpdates();
    /// Has the base tell a client anew how all is that it listens to.
    void restoreClient(std::uint32_t clientId);

private:
    const std::shared_ptr<CParamInterfaceLink> link;
    // Guarded by the link's lock.
    CParamInterfaceBase* base = nullptr;
    std::uint32_t lastClientId = 0;
    CSet<std::uint32_t> clients;
};

} // namespace tsm
