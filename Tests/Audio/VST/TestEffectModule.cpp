#include "Audio/VST/CPluginFactory.h"
#include "Audio/VST/ModuleMain.h"
#include "Audio/VST/VstText.h"
#include "Tests/Audio/VST/CTestSplit.h"

namespace Steinberg {

namespace {

template <class Effect>
FUnknown* create(void*)
{
    return static_cast<Vst::IAudioProcessor*>(new Effect);
}

PClassInfo2 describe(const CInterfaceId& id, const char8* category, const char8* name)
{
    PClassInfo2 info = {};
    copyId(id, info.cid);
    info.cardinality = PClassInfo::kManyInstances;
    copyText<char8>(category, info.category);
    copyText<char8>(name, info.name);
    copyText<char8>("Fx|Tools", info.subCategories);
    copyText<char8>("1.2.3", info.version);
    copyText<char8>("VST 3.6.5", info.sdkVersion);
    return info;
}

} // namespace

bool beginModule(void*)
{
    return true;
}

bool endModule()
{
    return true;
}

IPluginFactory* makePluginFactory()
{
    PFactoryInfo info = {};
    copyText<char8>("Test Vendor", info.vendor);
    copyText<char8>("https://example.invalid", info.url);
    copyText<char8>("info@example.invalid", info.email);
    auto* factory = new CPluginFactory(info);
    factory->registerClass(describe(CInterfaceId(0x7E57EFFE, 0xC7000000, 0, 0xA1),
                                    Vst::kVstAudioEffectClass, "Test Gain"),
                           create<tsm::CTestEffect>);
    factory->registerClass(describe(CInterfaceId(0x7E57EFFE, 0xC7000000, 0, 0xA2),
                                    Vst::kVstAudioEffectClass, "Test Split"),
                           create<tsm::CTestSplitComponent>);
    factory->registerClass(describe(tsm::CTestSplitComponent::kControllerClass,
                                    Vst::kVstComponentControllerClass, "Test Split Controller"),
                           create<tsm::CTestSplitController>);
    return factory;
}

} // namespace Steinberg
