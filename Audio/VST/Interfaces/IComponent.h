#pragma once

#include "Audio/VST/Interfaces/IBStream.h"
#include "Audio/VST/Interfaces/IPluginBase.h"

namespace Steinberg::Vst {

enum MediaTypes : int32 { kAudio = 0, kEvent = 1, kNumMediaTypes = 2 };
enum BusDirections : int32 { kInput = 0, kOutput = 1 };
enum BusTypes : int32 { kMain = 0, kAux = 1 };
enum IoModes : int32 { kSimple = 0, kAdvanced = 1, kOfflineProcessing = 2 };

enum ComponentFlags : uint32 { kDistributable = 1 << 0, kSimpleModeSupported = 1 << 1 };

/// Description of a bus. Hosts compare the raw bytes of two: all must be written.
struct BusInfo {
    enum BusFlags : uint32 { kDefaultActive = 1 << 0, kIsControlVoltage = 1 << 1 };

    MediaType mediaType;
    BusDirection direction;
    int32 channelCount;
    String128 name;
    BusType busType;
    uint32 flags;
};

/// One end of a way through the plug-in; channel -1 stands for all.
struct RoutingInfo {
    MediaType mediaType;
    int32 busIndex;
    int32 channel;
};

/// The part of a plug-in that has buses and a state. [control] unless told otherwise.
class IComponent : public IPluginBase {
    TSM_VST_INTERFACE(IComponent, 0xE831FF31, 0xF2D54301, 0x928EBBEE, 0x25697802)

    /// The class of a controller that is an object of its own; any failure when it is the same one.
    virtual tresult getControllerClassId(TUID classId) = 0;
    virtual tresult setIoMode(IoMode mode) = 0;
    virtual int32 getBusCount(MediaType type, BusDirection dir) = 0;
    virtual tresult getBusInfo(MediaType type, BusDirection dir, int32 index, BusInfo& bus) = 0;
    virtual tresult getRoutingInfo(RoutingInfo& inInfo, RoutingInfo& outInfo) = 0;
    virtual tresult activateBus(MediaType type, BusDirection dir, int32 index, TBool state) = 0;
    virtual tresult setActive(TBool state) = 0;
    /// Any time after initialize(), also while audio runs. The stream is borrowed.
    virtual tresult setState(IBStream* state) = 0;
    virtual tresult getState(IBStream* state) = 0;
};

} // namespace Steinberg::Vst
