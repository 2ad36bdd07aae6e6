#include "Audio/VST/Interfaces/IAudioProcessor.h"
#include "Audio/VST/Interfaces/IEditController.h"
#include "Audio/VST/Interfaces/IHostApplication.h"
#include "Audio/VST/Interfaces/IMessage.h"
#include "Audio/VST/Interfaces/IPluginFactory.h"
#include "Audio/VST/Interfaces/IRunLoop.h"
#include "Audio/VST/Interfaces/IUnitInfo.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

// The slots of each interface, proved by calls through the table of functions as a host of another
// compiler makes them. The doubles note the name of the function that was reached.
namespace {

using namespace Steinberg;
using namespace Steinberg::Vst;

std::string reached;

template <class Result = tresult>
Result note(const char* name)
{
    reached = name;
    return Result();
}

/// The three functions that each interface begins with.
#define TSM_NOTE_UNKNOWN(name)                                                                     \
    virtual ~name() = default;                                                                     \
    tresult queryInterface(const TUID, void**) override                                            \
    {                                                                                              \
        return note("queryInterface");                                                             \
    }                                                                                              \
    uint32 addRef() override                                                                       \
    {                                                                                              \
        return note<uint32>("addRef");                                                             \
    }                                                                                              \
    uint32 release() override                                                                      \
    {                                                                                              \
        return note<uint32>("release");                                                            \
    }

struct IAudioProcessorDouble final : IAudioProcessor {
    TSM_NOTE_UNKNOWN(IAudioProcessorDouble)
    tresult setBusArrangements(SpeakerArrangement*, int32, SpeakerArrangement*, int32) override
    {
        return note("setBusArrangements");
    }
    tresult getBusArrangement(BusDirection, int32, SpeakerArrangement&) override
    {
        return note("getBusArrangement");
    }
    tresult canProcessSampleSize(int32) override { return note("canProcessSampleSize"); }
    uint32 getLatencySamples() override { return note<uint32>("getLatencySamples"); }
    tresult setupProcessing(ProcessSetup&) override { return note("setupProcessing"); }
    tresult setProcessing(TBool) override { return note("setProcessing"); }
    tresult process(ProcessData&) override { return note("process"); }
    uint32 getTailSamples() override { return note<uint32>("getTailSamples"); }
};

struct IProcessContextRequirementsDouble final : IProcessContextRequirements {
    TSM_NOTE_UNKNOWN(IProcessContextRequirementsDouble)
    uint32 getProcessContextRequirements() override
    {
        return note<uint32>("getProcessContextRequirements");
    }
};

struct IBStreamDouble final : IBStream {
    TSM_NOTE_UNKNOWN(IBStreamDouble)
    tresult read(void*, int32, int32*) override { return note("read"); }
    tresult write(void*, int32, int32*) override { return note("write"); }
    tresult seek(int64, int32, int64*) override { return note("seek"); }
    tresult tell(int64*) override { return note("tell"); }
};

struct ISizeableStreamDouble final : ISizeableStream {
    TSM_NOTE_UNKNOWN(ISizeableStreamDouble)
    tresult getStreamSize(int64&) override { return note("getStreamSize"); }
    tresult setStreamSize(int64) override { return note("setStreamSize"); }
};

struct IComponentDouble final : IComponent {
    TSM_NOTE_UNKNOWN(IComponentDouble)
    tresult initialize(FUnknown*) override { return note("initialize"); }
    tresult terminate() override { return note("terminate"); }
    tresult getControllerClassId(TUID) override { return note("getControllerClassId"); }
    tresult setIoMode(IoMode) override { return note("setIoMode"); }
    int32 getBusCount(MediaType, BusDirection) override { return note<int32>("getBusCount"); }
    tresult getBusInfo(MediaType, BusDirection, int32, BusInfo&) override
    {
        return note("getBusInfo");
    }
    tresult getRoutingInfo(RoutingInfo&, RoutingInfo&) override { return note("getRoutingInfo"); }
    tresult activateBus(MediaType, BusDirection, int32, TBool) override
    {
        return note("activateBus");
    }
    tresult setActive(TBool) override { return note("setActive"); }
    tresult setState(IBStream*) override { return note("setState"); }
    tresult getState(IBStream*) override { return note("getState"); }
};

struct IComponentHandlerDouble final : IComponentHandler {
    TSM_NOTE_UNKNOWN(IComponentHandlerDouble)
    tresult beginEdit(ParamID) override { return note("beginEdit"); }
    tresult performEdit(ParamID, ParamValue) override { return note("performEdit"); }
    tresult endEdit(ParamID) override { return note("endEdit"); }
    tresult restartComponent(int32) override { return note("restartComponent"); }
};

struct IComponentHandler2Double final : IComponentHandler2 {
    TSM_NOTE_UNKNOWN(IComponentHandler2Double)
    tresult setDirty(TBool) override { return note("setDirty"); }
    tresult requestOpenEditor(FIDString) override { return note("requestOpenEditor"); }
    tresult startGroupEdit() override { return note("startGroupEdit"); }
    tresult finishGroupEdit() override { return note("finishGroupEdit"); }
};

struct IEditControllerDouble final : IEditController {
    TSM_NOTE_UNKNOWN(IEditControllerDouble)
    tresult initialize(FUnknown*) override { return note("initialize"); }
    tresult terminate() override { return note("terminate"); }
    tresult setComponentState(IBStream*) override { return note("setComponentState"); }
    tresult setEditorState(IBStream*) override { return note("setEditorState"); }
    tresult getEditorState(IBStream*) override { return note("getEditorState"); }
    int32 getParameterCount() override { return note<int32>("getParameterCount"); }
    tresult getParameterInfo(int32, ParameterInfo&) override { return note("getParameterInfo"); }
    tresult getParamStringByValue(ParamID, ParamValue, String128) override
    {
        return note("getParamStringByValue");
    }
    tresult getParamValueByString(ParamID, TChar*, ParamValue&) override
    {
        return note("getParamValueByString");
    }
    ParamValue normalizedParamToPlain(ParamID, ParamValue) override
    {
        return note<ParamValue>("normalizedParamToPlain");
    }
    ParamValue plainParamToNormalized(ParamID, ParamValue) override
    {
        return note<ParamValue>("plainParamToNormalized");
    }
    ParamValue getParamNormalized(ParamID) override
    {
        return note<ParamValue>("getParamNormalized");
    }
    tresult setParamNormalized(ParamID, ParamValue) override { return note("setParamNormalized"); }
    tresult setComponentHandler(IComponentHandler*) override { return note("setComponentHandler"); }
    IPlugView* createView(FIDString) override { return note<IPlugView*>("createView"); }
};

struct IEditController2Double final : IEditController2 {
    TSM_NOTE_UNKNOWN(IEditController2Double)
    tresult setKnobMode(KnobMode) override { return note("setKnobMode"); }
    tresult openHelp(TBool) override { return note("openHelp"); }
    tresult openAboutBox(TBool) override { return note("openAboutBox"); }
};

struct IEventListDouble final : IEventList {
    TSM_NOTE_UNKNOWN(IEventListDouble)
    int32 getEventCount() override { return note<int32>("getEventCount"); }
    tresult getEvent(int32, Event&) override { return note("getEvent"); }
    tresult addEvent(Event&) override { return note("addEvent"); }
};

struct IHostApplicationDouble final : IHostApplication {
    TSM_NOTE_UNKNOWN(IHostApplicationDouble)
    tresult getName(String128) override { return note("getName"); }
    tresult createInstance(TUID, TUID, void**) override { return note("createInstance"); }
};

struct IPlugInterfaceSupportDouble final : IPlugInterfaceSupport {
    TSM_NOTE_UNKNOWN(IPlugInterfaceSupportDouble)
    tresult isPlugInterfaceSupported(const TUID) override
    {
        return note("isPlugInterfaceSupported");
    }
};

struct IAttributeListDouble final : IAttributeList {
    TSM_NOTE_UNKNOWN(IAttributeListDouble)
    tresult setInt(AttrID, int64) override { return note("setInt"); }
    tresult getInt(AttrID, int64&) override { return note("getInt"); }
    tresult setFloat(AttrID, double) override { return note("setFloat"); }
    tresult getFloat(AttrID, double&) override { return note("getFloat"); }
    tresult setString(AttrID, const TChar*) override { return note("setString"); }
    tresult getString(AttrID, TChar*, uint32) override { return note("getString"); }
    tresult setBinary(AttrID, const void*, uint32) override { return note("setBinary"); }
    tresult getBinary(AttrID, const void*&, uint32&) override { return note("getBinary"); }
};

struct IMessageDouble final : IMessage {
    TSM_NOTE_UNKNOWN(IMessageDouble)
    FIDString getMessageID() override { return note<FIDString>("getMessageID"); }
    void setMessageID(FIDString) override { note("setMessageID"); }
    IAttributeList* getAttributes() override { return note<IAttributeList*>("getAttributes"); }
};

struct IConnectionPointDouble final : IConnectionPoint {
    TSM_NOTE_UNKNOWN(IConnectionPointDouble)
    tresult connect(IConnectionPoint*) override { return note("connect"); }
    tresult disconnect(IConnectionPoint*) override { return note("disconnect"); }
    tresult notify(IMessage*) override { return note("notify"); }
};

struct IInfoListenerDouble final : ChannelContext::IInfoListener {
    TSM_NOTE_UNKNOWN(IInfoListenerDouble)
    tresult setChannelContextInfos(IAttributeList*) override
    {
        return note("setChannelContextInfos");
    }
};

struct IParamValueQueueDouble final : IParamValueQueue {
    TSM_NOTE_UNKNOWN(IParamValueQueueDouble)
    ParamID getParameterId() override { return note<ParamID>("getParameterId"); }
    int32 getPointCount() override { return note<int32>("getPointCount"); }
    tresult getPoint(int32, int32&, ParamValue&) override { return note("getPoint"); }
    tresult addPoint(int32, ParamValue, int32&) override { return note("addPoint"); }
};

struct IParameterChangesDouble final : IParameterChanges {
    TSM_NOTE_UNKNOWN(IParameterChangesDouble)
    int32 getParameterCount() override { return note<int32>("getParameterCount"); }
    IParamValueQueue* getParameterData(int32) override
    {
        return note<IParamValueQueue*>("getParameterData");
    }
    IParamValueQueue* addParameterData(const ParamID&, int32&) override
    {
        return note<IParamValueQueue*>("addParameterData");
    }
};

struct IPlugFrameDouble final : IPlugFrame {
    TSM_NOTE_UNKNOWN(IPlugFrameDouble)
    tresult resizeView(IPlugView*, ViewRect*) override { return note("resizeView"); }
};

struct IPlugViewDouble final : IPlugView {
    TSM_NOTE_UNKNOWN(IPlugViewDouble)
    tresult isPlatformTypeSupported(FIDString) override { return note("isPlatformTypeSupported"); }
    tresult attached(void*, FIDString) override { return note("attached"); }
    tresult removed() override { return note("removed"); }
    tresult onWheel(float) override { return note("onWheel"); }
    tresult onKeyDown(char16, int16, int16) override { return note("onKeyDown"); }
    tresult onKeyUp(char16, int16, int16) override { return note("onKeyUp"); }
    tresult getSize(ViewRect*) override { return note("getSize"); }
    tresult onSize(ViewRect*) override { return note("onSize"); }
    tresult onFocus(TBool) override { return note("onFocus"); }
    tresult setFrame(IPlugFrame*) override { return note("setFrame"); }
    tresult canResize() override { return note("canResize"); }
    tresult checkSizeConstraint(ViewRect*) override { return note("checkSizeConstraint"); }
};

struct IPlugViewContentScaleSupportDouble final : IPlugViewContentScaleSupport {
    TSM_NOTE_UNKNOWN(IPlugViewContentScaleSupportDouble)
    tresult setContentScaleFactor(float) override { return note("setContentScaleFactor"); }
};

struct IPluginBaseDouble final : IPluginBase {
    TSM_NOTE_UNKNOWN(IPluginBaseDouble)
    tresult initialize(FUnknown*) override { return note("initialize"); }
    tresult terminate() override { return note("terminate"); }
};

struct IPluginFactoryDouble final : IPluginFactory {
    TSM_NOTE_UNKNOWN(IPluginFactoryDouble)
    tresult getFactoryInfo(PFactoryInfo*) override { return note("getFactoryInfo"); }
    int32 countClasses() override { return note<int32>("countClasses"); }
    tresult getClassInfo(int32, PClassInfo*) override { return note("getClassInfo"); }
    tresult createInstance(FIDString, FIDString, void**) override { return note("createInstance"); }
};

struct IPluginFactory2Double final : IPluginFactory2 {
    TSM_NOTE_UNKNOWN(IPluginFactory2Double)
    tresult getFactoryInfo(PFactoryInfo*) override { return note("getFactoryInfo"); }
    int32 countClasses() override { return note<int32>("countClasses"); }
    tresult getClassInfo(int32, PClassInfo*) override { return note("getClassInfo"); }
    tresult createInstance(FIDString, FIDString, void**) override { return note("createInstance"); }
    tresult getClassInfo2(int32, PClassInfo2*) override { return note("getClassInfo2"); }
};

struct IPluginFactory3Double final : IPluginFactory3 {
    TSM_NOTE_UNKNOWN(IPluginFactory3Double)
    tresult getFactoryInfo(PFactoryInfo*) override { return note("getFactoryInfo"); }
    int32 countClasses() override { return note<int32>("countClasses"); }
    tresult getClassInfo(int32, PClassInfo*) override { return note("getClassInfo"); }
    tresult createInstance(FIDString, FIDString, void**) override { return note("createInstance"); }
    tresult getClassInfo2(int32, PClassInfo2*) override { return note("getClassInfo2"); }
    tresult getClassInfoUnicode(int32, PClassInfoW*) override
    {
        return note("getClassInfoUnicode");
    }
    tresult setHostContext(FUnknown*) override { return note("setHostContext"); }
};

struct IEventHandlerDouble final : Linux::IEventHandler {
    TSM_NOTE_UNKNOWN(IEventHandlerDouble)
    void onFDIsSet(Linux::FileDescriptor) override { note("onFDIsSet"); }
};

struct ITimerHandlerDouble final : Linux::ITimerHandler {
    TSM_NOTE_UNKNOWN(ITimerHandlerDouble)
    void onTimer() override { note("onTimer"); }
};

struct IRunLoopDouble final : Linux::IRunLoop {
    TSM_NOTE_UNKNOWN(IRunLoopDouble)
    tresult registerEventHandler(Linux::IEventHandler*, Linux::FileDescriptor) override
    {
        return note("registerEventHandler");
    }
    tresult unregisterEventHandler(Linux::IEventHandler*) override
    {
        return note("unregisterEventHandler");
    }
    tresult registerTimer(Linux::ITimerHandler*, Linux::TimerInterval) override
    {
        return note("registerTimer");
    }
    tresult unregisterTimer(Linux::ITimerHandler*) override { return note("unregisterTimer"); }
};

struct IUnitInfoDouble final : IUnitInfo {
    TSM_NOTE_UNKNOWN(IUnitInfoDouble)
    int32 getUnitCount() override { return note<int32>("getUnitCount"); }
    tresult getUnitInfo(int32, UnitInfo&) override { return note("getUnitInfo"); }
    int32 getProgramListCount() override { return note<int32>("getProgramListCount"); }
    tresult getProgramListInfo(int32, ProgramListInfo&) override
    {
        return note("getProgramListInfo");
    }
    tresult getProgramName(ProgramListID, int32, String128) override
    {
        return note("getProgramName");
    }
    tresult getProgramInfo(ProgramListID, int32, const char8*, String128) override
    {
        return note("getProgramInfo");
    }
    tresult hasProgramPitchNames(ProgramListID, int32) override
    {
        return note("hasProgramPitchNames");
    }
    tresult getProgramPitchName(ProgramListID, int32, int16, String128) override
    {
        return note("getProgramPitchName");
    }
    UnitID getSelectedUnit() override { return note<UnitID>("getSelectedUnit"); }
    tresult selectUnit(UnitID) override { return note("selectUnit"); }
    tresult getUnitByBus(MediaType, BusDirection, int32, int32, UnitID&) override
    {
        return note("getUnitByBus");
    }
    tresult setUnitProgramData(int32, int32, IBStream*) override
    {
        return note("setUnitProgramData");
    }
};

struct IUnitHandlerDouble final : IUnitHandler {
    TSM_NOTE_UNKNOWN(IUnitHandlerDouble)
    tresult notifyUnitSelection(UnitID) override { return note("notifyUnitSelection"); }
    tresult notifyProgramListChange(ProgramListID, int32) override
    {
        return note("notifyProgramListChange");
    }
};

struct CInterfaceRow {
    const char* name;
    const char8* iid;
    const char* bytes; // of the identifier, as Linux lays them out
    void* object;      // as the interface
    const char* slots;
};

template <class Double>
void* object()
{
    static Double only;
    return &only;
}

const std::vector<CInterfaceRow>& interfaces()
{
    static const std::vector<CInterfaceRow> rows{
        {"IAudioProcessor", IAudioProcessor::iid, "42 04 3F 99 B7 DA 45 3C A5 69 E7 9D 9A AE C3 3D",
         object<IAudioProcessorDouble>(),
         "setBusArrangements getBusArrangement canProcessSampleSize getLatencySamples "
         "setupProcessing setProcessing process getTailSamples"},
        {"IProcessContextRequirements", IProcessContextRequirements::iid,
         "2A 65 43 03 EF 76 4E 3D 95 B5 FE 83 73 0E F6 D0",
         object<IProcessContextRequirementsDouble>(), "getProcessContextRequirements"},
        {"IBStream", IBStream::iid, "C3 BF 6E A2 30 99 47 52 9B 6B F9 90 1E E3 3E 9B",
         object<IBStreamDouble>(), "read write seek tell"},
        {"ISizeableStream", ISizeableStream::iid, "04 F9 54 9E E0 2F 4E 6E 87 E8 6A 87 47 F4 E1 7F",
         object<ISizeableStreamDouble>(), "getStreamSize setStreamSize"},
        {"IComponent", IComponent::iid, "E8 31 FF 31 F2 D5 43 01 92 8E BB EE 25 69 78 02",
         object<IComponentDouble>(),
         "initialize terminate getControllerClassId setIoMode getBusCount getBusInfo "
         "getRoutingInfo activateBus setActive setState getState"},
        {"IComponentHandler", IComponentHandler::iid,
         "93 A0 BE A3 0B D0 45 DB 8E 89 0B 0C C1 E4 6A C6", object<IComponentHandlerDouble>(),
         "beginEdit performEdit endEdit restartComponent"},
        {"IComponentHandler2", IComponentHandler2::iid,
         "F0 40 B4 B3 A3 60 45 EC AB CD C0 45 B4 D5 A2 CC", object<IComponentHandler2Double>(),
         "setDirty requestOpenEditor startGroupEdit finishGroupEdit"},
        {"IEditController", IEditController::iid, "DC D7 BB E3 77 42 44 8D A8 74 AA CC 97 9C 75 9E",
         object<IEditControllerDouble>(),
         "initialize terminate setComponentState setEditorState getEditorState "
         "getParameterCount getParameterInfo getParamStringByValue getParamValueByString "
         "normalizedParamToPlain plainParamToNormalized getParamNormalized "
         "setParamNormalized setComponentHandler createView"},
        {"IEditController2", IEditController2::iid,
         "7F 4E FE 59 F3 20 49 67 AC 27 A3 AE AF B6 30 38", object<IEditController2Double>(),
         "setKnobMode openHelp openAboutBox"},
        {"IEventList", IEventList::iid, "3A 2C 42 14 34 63 49 FE B2 C4 F3 97 B9 69 5A 44",
         object<IEventListDouble>(), "getEventCount getEvent addEvent"},
        {"IHostApplication", IHostApplication::iid,
         "58 E5 95 CC DB 2D 49 69 8B 6A AF 8C 36 A6 64 E5", object<IHostApplicationDouble>(),
         "getName createInstance"},
        {"IPlugInterfaceSupport", IPlugInterfaceSupport::iid,
         "4F B5 8B 9E 9E AA 4E 0F AB 36 1C 1C CC B5 6F EA", object<IPlugInterfaceSupportDouble>(),
         "isPlugInterfaceSupported"},
        {"IAttributeList", IAttributeList::iid, "1E 5F 0A EB CC 7F 45 33 A2 54 40 11 38 AD 5E E4",
         object<IAttributeListDouble>(),
         "setInt getInt setFloat getFloat setString getString setBinary getBinary"},
        {"IMessage", IMessage::iid, "93 6F 03 3B C6 C0 47 DB BB 08 82 F8 13 C1 E6 13",
         object<IMessageDouble>(), "getMessageID setMessageID getAttributes"},
        {"IConnectionPoint", IConnectionPoint::iid,
         "70 A4 15 6F 6E 6E 40 26 98 91 48 BF AA 60 D8 D1", object<IConnectionPointDouble>(),
         "connect disconnect notify"},
        {"IInfoListener", ChannelContext::IInfoListener::iid,
         "0F 19 47 81 8D 98 4A DA BB A0 C1 EF C0 11 D8 D0", object<IInfoListenerDouble>(),
         "setChannelContextInfos"},
        {"IParamValueQueue", IParamValueQueue::iid,
         "01 26 3A 18 ED 07 4F 6F 98 C9 D3 56 46 86 F9 BA", object<IParamValueQueueDouble>(),
         "getParameterId getPointCount getPoint addPoint"},
        {"IParameterChanges", IParameterChanges::iid,
         "A4 77 96 63 0B B6 4A 56 B4 43 84 A8 46 6F EB 9D", object<IParameterChangesDouble>(),
         "getParameterCount getParameterData addParameterData"},
        {"IPlugFrame", IPlugFrame::iid, "36 7F AF 01 AF A9 46 93 8D 4D A2 A0 ED 08 82 A3",
         object<IPlugFrameDouble>(), "resizeView"},
        {"IPlugView", IPlugView::iid, "5B C3 25 07 D0 60 49 EA A6 15 1B 52 2B 75 5B 29",
         object<IPlugViewDouble>(),
         "isPlatformTypeSupported attached removed onWheel onKeyDown onKeyUp getSize "
         "onSize onFocus setFrame canResize checkSizeConstraint"},
        {"IPlugViewContentScaleSupport", IPlugViewContentScaleSupport::iid,
         "65 ED 96 90 8A C4 45 25 8A AD EF 7A 72 EA 70 3F",
         object<IPlugViewContentScaleSupportDouble>(), "setContentScaleFactor"},
        {"IPluginBase", IPluginBase::iid, "22 88 8D DB 15 6E 45 AE 83 58 B3 48 08 19 06 25",
         object<IPluginBaseDouble>(), "initialize terminate"},
        {"IPluginFactory", IPluginFactory::iid, "7A 4D 81 1C 52 11 4A 1F AE D9 D2 EE 0B 43 BF 9F",
         object<IPluginFactoryDouble>(), "getFactoryInfo countClasses getClassInfo createInstance"},
        {"IPluginFactory2", IPluginFactory2::iid, "00 07 B6 50 F2 4B 4C 0B A4 64 ED B9 F0 0B 2A BB",
         object<IPluginFactory2Double>(),
         "getFactoryInfo countClasses getClassInfo createInstance getClassInfo2"},
        {"IPluginFactory3", IPluginFactory3::iid, "45 55 A2 AB C1 23 4E 57 9B 12 29 10 36 87 89 31",
         object<IPluginFactory3Double>(),
         "getFactoryInfo countClasses getClassInfo createInstance getClassInfo2 "
         "getClassInfoUnicode setHostContext"},
        {"IEventHandler", Linux::IEventHandler::iid,
         "56 1E 65 C9 13 A0 49 6F 81 3A 2C 35 65 4D 79 83", object<IEventHandlerDouble>(),
         "onFDIsSet"},
        {"ITimerHandler", Linux::ITimerHandler::iid,
         "10 BD D9 4F 41 42 47 74 82 1F AD 8F EC A7 2C A9", object<ITimerHandlerDouble>(),
         "onTimer"},
        {"IRunLoop", Linux::IRunLoop::iid, "18 C3 53 66 97 76 4F 1A 9C 5B 83 85 7A 87 13 89",
         object<IRunLoopDouble>(),
         "registerEventHandler unregisterEventHandler registerTimer unregisterTimer"},
        {"IUnitInfo", IUnitInfo::iid, "3D 4B D6 B5 91 3A 4F D2 A8 86 E7 68 A5 EB 92 C1",
         object<IUnitInfoDouble>(),
         "getUnitCount getUnitInfo getProgramListCount getProgramListInfo getProgramName "
         "getProgramInfo hasProgramPitchNames getProgramPitchName getSelectedUnit "
         "selectUnit getUnitByBus setUnitProgramData"},
        {"IUnitHandler", IUnitHandler::iid, "4B 51 47 F8 46 54 48 6B 8D AB 30 BA 16 3A 3C 56",
         object<IUnitHandlerDouble>(), "notifyUnitSelection notifyProgramListChange"},
    };
    return rows;
}

std::string hexOf(const char8* id)
{
    std::string text;
    for (int i = 0; i < 16; ++i) {
        char pair[4];
        std::snprintf(pair, sizeof pair, i == 0 ? "%02X" : " %02X", static_cast<uint8>(id[i]));
        text += pair;
    }
    return text;
}

TEST(VstInterfaces, HaveTheIdentifiersThatHostsAskFor)
{
    EXPECT_EQ(hexOf(FUnknown::iid), "00 00 00 00 00 00 00 00 C0 00 00 00 00 00 00 46");
    for (const CInterfaceRow& row : interfaces())
        EXPECT_EQ(hexOf(row.iid), row.bytes) << row.name;
}

TEST(VstInterfaces, HaveTheirFunctionsAtTheSlotsThatHostsCall)
{
    for (const CInterfaceRow& row : interfaces()) {
        SCOPED_TRACE(row.name);
        std::istringstream names("queryInterface addRef release " + std::string(row.slots));
        // The first word of an object is its table; what a double is called with it doesn't look
        // at.
        void** const table = *static_cast<void***>(row.object);
        int slot = 0;
        for (std::string name; names >> name; ++slot) {
            reached.clear();
            reinterpret_cast<void (*)(void*)>(table[slot])(row.object);
            EXPECT_EQ(reached, name) << slot;
        }
    }
}

} // namespace
