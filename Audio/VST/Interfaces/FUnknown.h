#pragma once

#include "Audio/VST/Interfaces/InterfaceId.h"

namespace Steinberg {

/// The root of all interfaces: asks for others of the same object and counts references.
class FUnknown {
    TSM_VST_INTERFACE(FUnknown, 0x00000000, 0x00000000, 0xC0000000, 0x00000046)

    /// Sets `*obj` to the object's interface of this identifier, with one reference for the caller,
    /// or to null with kNoInterface. A null `obj` gives kInvalidArgument. [any]
    virtual tresult queryInterface(const TUID iid, void** obj) = 0;
    /// Both give the new count, which is for debugging only. An object begins with 1 and ends
    /// with 0. [any]
    virtual uint32 addRef() = 0;
    virtual uint32 release() = 0;
};

} // namespace Steinberg
