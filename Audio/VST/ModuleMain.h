#pragma once

#include "Audio/VST/Interfaces/IPluginFactory.h"

namespace Steinberg {

/// What a plug-in's module defines for ModuleMain.cpp, which exports the entry points and is
/// compiled into the module. CPluginModule::CHooks tells when they are called.
bool beginModule(void* handle);
bool endModule();
IPluginFactory* makePluginFactory();

} // namespace Steinberg
