#pragma once

#include "Audio/VST/Interfaces/FUnknown.h"

namespace Steinberg::Linux {

using TimerInterval = uint64; ///< milliseconds
using FileDescriptor = int;

/// A plug-in's object that the host calls when a descriptor can be read; calls without anything to
/// read happen too.
class IEventHandler : public FUnknown {
    TSM_VST_INTERFACE(IEventHandler, 0x561E65C9, 0x13A0496F, 0x813A2C35, 0x654D7983)

    virtual void onFDIsSet(FileDescriptor fd) = 0;
};

class ITimerHandler : public FUnknown {
    TSM_VST_INTERFACE(ITimerHandler, 0x10BDD94F, 0x41424774, 0x821FAD8F, 0xECA72CA9)

    virtual void onTimer() = 0;
};

/// The host's loop of events. Handlers must live until they are unregistered.
class IRunLoop : public FUnknown {
    TSM_VST_INTERFACE(IRunLoop, 0x18C35366, 0x97764F1A, 0x9C5B8385, 0x7A871389)

    virtual tresult registerEventHandler(IEventHandler* handler, FileDescriptor fd) = 0;
    virtual tresult unregisterEventHandler(IEventHandler* handler) = 0;
    virtual tresult registerTimer(ITimerHandler* handler, TimerInterval milliseconds) = 0;
    virtual tresult unregisterTimer(ITimerHandler* handler) = 0;
};

} // namespace Steinberg::Linux
