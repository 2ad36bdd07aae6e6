#include "Audio/VST/ComponentBase.h"

#include "Audio/VST/Interfaces/IHostApplication.h"

#include <cstring>

namespace Steinberg::Vst {

namespace {

constexpr FIDString kTextMessage = "TextMessage";
constexpr AttrID kTextAttribute = "Text";
constexpr uint32 kTextUnits = 256;

} // namespace

tresult ComponentBase::queryInterface(const TUID wanted, void** obj)
{
    if (giveInterface<IPluginBase>(wanted, obj, this) ||
        giveInterface<IConnectionPoint>(wanted, obj, this))
        return kResultOk;
    return FObject::queryInterface(wanted, obj);
}

tresult ComponentBase::initialize(FUnknown* context)
{
    if (isInitialized)
        return kResultFalse;
    isInitialized = true;
    hostContext = IPtr<FUnknown>(context);
    return kResultOk;
}

tresult ComponentBase::terminate()
{
    isInitialized = false;
    hostContext.reset();
    if (const IPtr<IConnectionPoint> former = std::move(peer))
        former->disconnect(this);
    return kResultOk;
}

tresult ComponentBase::connect(IConnectionPoint* other)
{
    if (!other)
        return kInvalidArgument;
    if (peer)
        return kResultFalse;
    peer = IPtr<IConnectionPoint>(other);
    return kResultOk;
}

tresult ComponentBase::disconnect(IConnectionPoint* other)
{
    if (!other || peer.get() != other)
        return kResultFalse;
    peer.reset();
    return kResultOk;
}

tresult ComponentBase::notify(IMessage* message)
{
    if (!message)
        return kInvalidArgument;
    const FIDString id = message->getMessageID();
    IAttributeList* const attributes = message->getAttributes();
    if (!id || !attributes || std::strcmp(id, kTextMessage) != 0)
        return kResultFalse;
    TChar text[kTextUnits] = {};
    if (attributes->getString(kTextAttribute, text, sizeof text) != kResultOk)
        return kResultFalse;
    text[kTextUnits - 1] = 0; // a text that fills the room comes without its end
    return receiveText(text);
}

tresult ComponentBase::receiveText(const TChar*)
{
    return kResultOk;
}

tresult ComponentBase::sendTextMessage(const TChar* text)
{
    const IPtr<IMessage> message = allocateMessage();
    if (!text || !message || !peer)
        return kResultFalse;
    message->setMessageID(kTextMessage);
    IAttributeList* const attributes = message->getAttributes();
    if (!attributes || attributes->setString(kTextAttribute, text) != kResultOk)
        return kResultFalse;
    return peer->notify(message.get());
}

IPtr<IMessage> ComponentBase::allocateMessage() const
{
    const IPtr<IHostApplication> host = queryAs<IHostApplication>(hostContext.get());
    TUID id;
    copyId(IMessage::iid, id);
    void* made = nullptr;
    if (!host || host->createInstance(id, id, &made) != kResultOk)
        return {};
    return IPtr<IMessage>::owned(static_cast<IMessage*>(made));
}

} // namespace Steinberg::Vst
