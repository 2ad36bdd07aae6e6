#include "Audio/VST/CPluginFactory.h"
#include "Audio/VST/Interfaces/Speakers.h"
#include "Audio/VST/ModuleMain.h"
#include "Audio/VST/VstText.h"
#include "Tests/Audio/VST/CTestSplit.h"
#include "Tests/Tools/conform/CFaultyEffect.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace Steinberg {

namespace {

using tsm::CFaultyEffect;
using tsm::EFault;

/// Of two objects.
class CFaultySplitComponent : public tsm::CTestSplitComponent {
public:
    tresult connect(Vst::IConnectionPoint* other) override
    {
        if (other && CFaultyEffect::has(EFault::PeerKept))
            other->addRef();
        return CTestSplitComponent::connect(other);
    }
};

template <class Object>
FUnknown* create(void*)
{
    return static_cast<Vst::IAudioProcessor*>(new Object);
}

class CFaultyFactory : public CPluginFactory {
public:
    using CPluginFactory::CPluginFactory;

    tresult queryInterface(const TUID wanted, void** obj) override
    {
        const tresult result = CPluginFactory::queryInterface(wanted, obj);
        if (result == kResultOk && CFaultyEffect::has(EFault::FactoryReferenceKept) &&
            isSameId(wanted, IPluginFactory2::iid))
            addRef();
        return result;
    }
    tresult getFactoryInfo(PFactoryInfo* info) override
    {
        isDescribed = true;
        return CPluginFactory::getFactoryInfo(info);
    }
    uint32 release() override
    {
        isLetGo = true;
        return CPluginFactory::release();
    }
    int32 countClasses() override
    {
        const bool isEmpty = CFaultyEffect::has(EFault::FactoryEmptied) && isLetGo && !isDescribed;
        return isEmpty ? 0 : CPluginFactory::countClasses();
    }
    tresult getClassInfo2(int32 index, PClassInfo2* info) override
    {
        const tresult result = CPluginFactory::getClassInfo2(index, info);
        if (result == kResultOk && CFaultyEffect::has(EFault::ClassNameWithoutEnd))
            std::ranges::fill(info->name, 'x');
        return result;
    }
    tresult createInstance(FIDString cid, FIDString wanted, void** obj) override
    {
        void* const former = *obj;
        const tresult result = CPluginFactory::createInstance(cid, wanted, obj);
        if (result != kResultOk && CFaultyEffect::has(EFault::PointerLeftBehind))
            *obj = former;
        return result;
    }

private:
    bool isDescribed = false;
    bool isLetGo = false;
};

} // namespace

bool beginModule(void*)
{
    const char* const name = std::getenv(tsm::kFaultVariable);
    CFaultyEffect::setFaults(name ? name : "");
    if (CFaultyEffect::has(EFault::Talkative))
        std::puts("Here I am.");
    return true;
}

bool endModule()
{
    return !CFaultyEffect::has(EFault::ExitRefused);
}

IPluginFactory* makePluginFactory()
{
    PFactoryInfo info = {};
    if (!CFaultyEffect::has(EFault::VendorMissing))
        copyText<char8>("Test Vendor", info.vendor);
    auto* const factory = new CFaultyFactory(info);
    PClassInfo2 effect = {};
    copyId(CInterfaceId(0x7E57EFFE, 0xC7000000, 0, 0xB1), effect.cid);
    effect.cardinality = PClassInfo::kManyInstances;
    copyText<char8>(Vst::kVstAudioEffectClass, effect.category);
    copyText<char8>("Test Faults", effect.name);
    if (!CFaultyEffect::has(EFault::CategoriesMissing))
        copyText<char8>("Fx|Tools", effect.subCategories);
    copyText<char8>("1.0.0", effect.version);
    copyText<char8>("VST 3.6.5", effect.sdkVersion);
    factory->registerClass(effect, create<CFaultyEffect>);
    copyId(CInterfaceId(0x7E57EFFE, 0xC7000000, 0, 0xB2), effect.cid);
    copyText<char8>("Test Faults Split", effect.name);
    factory->registerClass(effect, create<CFaultySplitComponent>);
    copyId(tsm::CTestSplitComponent::kControllerClass, effect.cid);
    copyText<char8>(Vst::kVstComponentControllerClass, effect.category);
    copyText<char8>("Test Faults Split Controller", effect.name);
    factory->registerClass(effect, create<tsm::CTestSplitController>);
    return factory;
}

} // namespace Steinberg
