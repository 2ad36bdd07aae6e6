#include "Audio/VST/CProductModule.h"
#include "Audio/VST/ModuleMain.h"

// What the exported entry points of the bundle's module do.

bool Steinberg::beginModule(void*)
{
    CProductModule::begin();
    return true;
}

bool Steinberg::endModule()
{
    CProductModule::end();
    return true;
}

Steinberg::IPluginFactory* Steinberg::makePluginFactory()
{
    return CProductModule::makeFactory();
}
