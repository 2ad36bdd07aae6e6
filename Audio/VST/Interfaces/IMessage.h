#pragma once

#include "Audio/VST/Interfaces/FUnknown.h"

namespace Steinberg::Vst {

/// Named values, given by the host. Sizes are in bytes; a value that is absent or of another type
/// gives kResultFalse.
class IAttributeList : public FUnknown {
    TSM_VST_INTERFACE(IAttributeList, 0x1E5F0AEB, 0xCC7F4533, 0xA2544011, 0x38AD5EE4)

    virtual tresult setInt(AttrID id, int64 value) = 0;
    virtual tresult getInt(AttrID id, int64& value) = 0;
    virtual tresult setFloat(AttrID id, double value) = 0;
    virtual tresult getFloat(AttrID id, double& value) = 0;
    virtual tresult setString(AttrID id, const TChar* string) = 0;
    /// A text that does not fit is cut, without a final 0.
    virtual tresult getString(AttrID id, TChar* string, uint32 sizeInBytes) = 0;
    virtual tresult setBinary(AttrID id, const void* data, uint32 sizeInBytes) = 0;
    /// `data` is borrowed from the list.
    virtual tresult getBinary(AttrID id, const void*& data, uint32& sizeInBytes) = 0;
};

class IMessage : public FUnknown {
    TSM_VST_INTERFACE(IMessage, 0x936F033B, 0xC6C047DB, 0xBB0882F8, 0x13C1E613)

    virtual FIDString getMessageID() = 0;
    virtual void setMessageID(FIDString id) = 0;
    /// Borrowed.
    virtual IAttributeList* getAttributes() = 0;
};

/// Lets component and controller talk when they are two objects.
class IConnectionPoint : public FUnknown {
    TSM_VST_INTERFACE(IConnectionPoint, 0x70A4156F, 0x6E6E4026, 0x989148BF, 0xAA60D8D1)

    virtual tresult connect(IConnectionPoint* other) = 0;
    virtual tresult disconnect(IConnectionPoint* other) = 0;
    virtual tresult notify(IMessage* message) = 0;
};

namespace ChannelContext {

constexpr AttrID kChannelNameKey = "channel name";

/// Takes what the host tells of the track. [control]
class IInfoListener : public FUnknown {
    TSM_VST_INTERFACE(IInfoListener, 0x0F194781, 0x8D984ADA, 0xBBA0C1EF, 0xC011D8D0)

    virtual tresult setChannelContextInfos(IAttributeList* list) = 0;
};

} // namespace ChannelContext
} // namespace Steinberg::Vst
