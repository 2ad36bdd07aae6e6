#include "Tools/conform/InterfaceIds.h"

#include "Audio/VST/Interfaces/IAudioProcessor.h"
#include "Audio/VST/Interfaces/IEditController.h"
#include "Audio/VST/Interfaces/IMessage.h"
#include "Audio/VST/Interfaces/IPluginFactory.h"
#include "Audio/VST/Interfaces/IUnitInfo.h"

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

/// A place that no object has.
void* const kNowhere = reinterpret_cast<void*>(0x5a5a5a5a5a5a5a5aULL);

/// The interface's pointer, its reference given back already; null when there is none. What isn't
/// cleared on refusal stays kNowhere.
void* lookUp(FUnknown& from, const char8* id, tresult& result)
{
    void* found = kNowhere;
    result = from.queryInterface(id, &found);
    if (result == kResultOk && found && found != kNowhere)
        static_cast<FUnknown*>(found)->release();
    return found;
}

void findUnknownIds(FUnknown& object, std::vector<CInterfaceFault>& faults)
{
    const CInterfaceId zero(0, 0, 0, 0);
    const CInterfaceId full(0xffffffff, 0xffffffff, 0xffffffff, 0xffffffff);
    // One bit beside FUnknown's: all 16 bytes count.
    const CInterfaceId beside(0, 0, 0xC0000000, 0x00000047);
    const CInterfaceId other(0x01234567, 0x89abcdef, 0x02468ace, 0x13579bdf);
    for (const CInterfaceName& unknown :
         {CInterfaceName{"zeros", zero}, CInterfaceName{"ones", full},
          CInterfaceName{"FUnknown's but for one bit", beside},
          CInterfaceName{"nobody's", other}}) {
        tresult result = kResultOk;
        const void* const found = lookUp(object, unknown.id, result);
        if (result == kResultOk || found)
            faults.push_back({"queryInterface() for the identifier " + std::string(unknown.name),
                              "a refusal, and a null pointer",
                              result == kResultOk ? "an interface"
                                                  : "a refusal, but a pointer that isn't null"});
    }
}

void compareFrom(const CInterfaceName& source, FUnknown& from, FUnknown& object,
                 std::vector<CInterfaceFault>& faults)
{
    for (const CInterfaceName& wanted : knownInterfaces()) {
        tresult direct = kResultOk;
        tresult indirect = kResultOk;
        const void* const first = lookUp(object, wanted.id, direct);
        const void* const second = lookUp(from, wanted.id, indirect);
        if ((direct == kResultOk) != (indirect == kResultOk) ||
            (direct == kResultOk && first != second))
            faults.push_back(
                {std::string(wanted.name) + " by queryInterface() of " + source.name,
                 direct == kResultOk ? "the pointer that FUnknown gives" : "none, as from FUnknown",
                 indirect == kResultOk ? "another one" : "none"});
    }
}

} // namespace

const std::vector<CInterfaceName>& knownInterfaces()
{
    static const std::vector<CInterfaceName> names{
        {"FUnknown", FUnknown::iid},
        {"IPluginFactory", IPluginFactory::iid},
        {"IPluginFactory2", IPluginFactory2::iid},
        {"IPluginFactory3", IPluginFactory3::iid},
        {"IPluginBase", IPluginBase::iid},
        {"IComponent", IComponent::iid},
        {"IAudioProcessor", IAudioProcessor::iid},
        {"IProcessContextRequirements", IProcessContextRequirements::iid},
        {"IEditController", IEditController::iid},
        {"IEditController2", IEditController2::iid},
        {"IUnitInfo", IUnitInfo::iid},
        {"IConnectionPoint", IConnectionPoint::iid},
        {"IInfoListener", ChannelContext::IInfoListener::iid},
        {"IPlugView", IPlugView::iid},
        {"IPlugViewContentScaleSupport", IPlugViewContentScaleSupport::iid}};
    return names;
}

std::vector<CInterfaceFault> findInterfaceFaults(FUnknown& object)
{
    std::vector<CInterfaceFault> faults;
    // An object that counts too little must last to the end of this.
    constexpr int kSpare = 4096;
    for (int i = 0; i < kSpare; ++i)
        object.addRef();
    const uint32 before = countReferences(object);
    void* const identity = [&object] {
        tresult ignored = kResultOk;
        return lookUp(object, FUnknown::iid, ignored);
    }();
    if (!identity || identity == kNowhere)
        return {{"queryInterface() for FUnknown", "the object", "none"}};
    FUnknown& self = *static_cast<FUnknown*>(identity);
    for (const CInterfaceName& each : knownInterfaces()) {
        void* found = nullptr;
        if (self.queryInterface(each.id, &found) != kResultOk || !found)
            continue;
        compareFrom(each, *static_cast<FUnknown*>(found), self, faults);
        static_cast<FUnknown*>(found)->release();
    }
    findUnknownIds(object, faults);
    const uint32 after = countReferences(object);
    if (after != before)
        faults.push_back({"references behind queries that were all released",
                          std::to_string(before - kSpare),
                          std::to_string(static_cast<int64>(after) - kSpare)});
    for (int i = 0; i < kSpare && after >= before; ++i)
        object.release();
    return faults;
}

uint32 countReferences(FUnknown& object)
{
    object.addRef();
    return object.release();
}

} // namespace tsm
