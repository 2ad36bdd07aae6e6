#pragma once

#include "Core/CObject.h"
#include "Other/CInterfaceBlock.h"
#include "Other/CParamInterfaceLink.h"
#include "Platform/CCriticalSection.h"

namespace tsm {

class CParamInterfaceClient;
class CWriteSeqBuffer;

/// A client's way to the base connector and back. What the client sends is worked at before the
/// call returns; what comes for it hops to the client's thread by an event.
///
/// Lock order: this one's, the client's, then those of the base's end.
class CParamInterfaceClientConnector : public CObject {
public:
    static void declareClass(CObjectClassInfo& info);
    /// Leaves both ends.
    void releaseLinks() override;

    /// Has the base take a message, which is empty then. Errors: the instance has ended, the
    /// base's. [ui]
    [[nodiscard]] virtual CError* send(CWriteSeqBuffer& message);
    /// Names the client, borrowed, null for none. [ui]
    void setClient(CParamInterfaceClient* newClient);
    /// The number by which the base knows the client; 0 before it is connected.
    [[nodiscard]] std::uint32_t getClientId() const noexcept { return clientId; }

protected:
    /// Joins a base connector. Errors: it has ended, or has no number left.
    [[nodiscard]] CError* connect(const std::shared_ptr<CParamInterfaceLink>& target);
    /// The way to the base connector; null without one.
    [[nodiscard]] const std::shared_ptr<CParamInterfaceLink>& getLink() const noexcept
    {
        return link;
    }
    /// True while blocks wait for the client's thread. [any]
    [[nodiscard]] bool hasIncoming();
    /// Takes blocks in, which leaves `blocks` empty, and calls the client's thread if any wait.
    /// Errors: the client's, when that is this thread. [any]
    [[nodiscard]] virtual CError* receive(CInterfaceBlockList& blocks);

private:
    [[nodiscard]] CError* onProcessBaseData();
    [[nodiscard]] CError* processIncoming();

    [[nodiscard]] CError* notConnected() const;

    std::shared_ptr<CParamInterfaceLink> link;
    std::uint32_t clientId = 0;
    CCriticalSection lock{4000};
    CParamInterfaceClient* client = nullptr;
    CInterfaceBlockList incoming;
    bool isProcessing = false;
};

} // namespace tsm
