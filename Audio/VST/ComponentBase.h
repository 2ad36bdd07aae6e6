#pragma once

#include "Audio/VST/FObject.h"
#include "Audio/VST/IPtr.h"
#include "Audio/VST/Interfaces/IMessage.h"
#include "Audio/VST/Interfaces/IPluginBase.h"

namespace Steinberg::Vst {

/// What components and controllers have in common: the host's object from initialize() to
/// terminate(), and the talk with a peer. [control]
class ComponentBase : public FObject, public IPluginBase, public IConnectionPoint {
public:
    tresult queryInterface(const TUID wanted, void** obj) override;
    TSM_VST_REFCOUNT(FObject)

    /// Keeps the context, which may be null. kResultFalse, and nothing changes, when the object is
    /// initialised already: hosts call this on component and controller, which may be one object.
    tresult initialize(FUnknown* context) override;
    /// Lets go of the peer and the context; harmless at any time.
    tresult terminate() override;

    tresult connect(IConnectionPoint* other) override;
    tresult disconnect(IConnectionPoint* other) override;
    /// Hands text messages to receiveText(); kResultFalse for others.
    tresult notify(IMessage* message) override;

    /// A peer's text of at most 255 units. [control]
    virtual tresult receiveText(const TChar* text);
    /// Sends a text to the peer; kResultFalse without host or peer.
    tresult sendTextMessage(const TChar* text);

    /// Borrowed; null outside of initialize() to terminate().
    [[nodiscard]] FUnknown* getHostContext() const { return hostContext.get(); }
    [[nodiscard]] bool getIsInitialized() const { return isInitialized; }

private:
    [[nodiscard]] IPtr<IMessage> allocateMessage() const;

    IPtr<FUnknown> hostContext;
    IPtr<IConnectionPoint> peer;
    bool isInitialized = false; // the context may be null, so that it doesn't tell
};

} // namespace Steinberg::Vst
