#include "Audio/VST/ModuleMain.h"

#include "Audio/VST/CPluginModule.h"

namespace {

Steinberg::CPluginModule& module()
{
    static Steinberg::CPluginModule theModule(
        {Steinberg::beginModule, Steinberg::endModule, Steinberg::makePluginFactory});
    return theModule;
}

} // namespace

#define TSM_VST_EXPORT extern "C" __attribute__((visibility("default")))

TSM_VST_EXPORT bool ModuleEntry(void* handle);
TSM_VST_EXPORT bool ModuleExit();
TSM_VST_EXPORT Steinberg::IPluginFactory* GetPluginFactory();

bool ModuleEntry(void* handle)
{
    return module().enter(handle);
}

bool ModuleExit()
{
    return module().exit();
}

Steinberg::IPluginFactory* GetPluginFactory()
{
    return module().getFactory();
}
