#pragma once

#include "Audio/VST/Interfaces/IComponent.h"

namespace Steinberg::Vst {

constexpr UnitID kRootUnitId = 0;
constexpr UnitID kNoParentUnitId = -1;
constexpr ProgramListID kNoProgramListId = -1;
constexpr int32 kAllProgramInvalid = -1;

struct UnitInfo {
    UnitID id;
    UnitID parentUnitId;
    String128 name;
    ProgramListID programListId;
};

struct ProgramListInfo {
    ProgramListID id;
    String128 name;
    int32 programCount;
};

/// Units and programs of a plug-in. [control]
class IUnitInfo : public FUnknown {
    TSM_VST_INTERFACE(IUnitInfo, 0x3D4BD6B5, 0x913A4FD2, 0xA886E768, 0xA5EB92C1)

    virtual int32 getUnitCount() = 0;
    virtual tresult getUnitInfo(int32 unitIndex, UnitInfo& info) = 0;
    virtual int32 getProgramListCount() = 0;
    virtual tresult getProgramListInfo(int32 listIndex, ProgramListInfo& info) = 0;
    virtual tresult getProgramName(ProgramListID listId, int32 programIndex, String128 name) = 0;
    virtual tresult getProgramInfo(ProgramListID listId, int32 programIndex,
                                   const char8* attributeId, String128 attributeValue) = 0;
    virtual tresult hasProgramPitchNames(ProgramListID listId, int32 programIndex) = 0;
    virtual tresult getProgramPitchName(ProgramListID listId, int32 programIndex, int16 midiPitch,
                                        String128 name) = 0;
    virtual UnitID getSelectedUnit() = 0;
    virtual tresult selectUnit(UnitID unitId) = 0;
    virtual tresult getUnitByBus(MediaType type, BusDirection dir, int32 busIndex, int32 channel,
                                 UnitID& unitId) = 0;
    virtual tresult setUnitProgramData(int32 listOrUnitId, int32 programIndex, IBStream* data) = 0;
};

/// What a plug-in tells the host of its programs; optional beside IComponentHandler.
class IUnitHandler : public FUnknown {
    TSM_VST_INTERFACE(IUnitHandler, 0x4B5147F8, 0x4654486B, 0x8DAB30BA, 0x163A3C56)

    virtual tresult notifyUnitSelection(UnitID unitId) = 0;
    virtual tresult notifyProgramListChange(ProgramListID listId, int32 programIndex) = 0;
};

} // namespace Steinberg::Vst
