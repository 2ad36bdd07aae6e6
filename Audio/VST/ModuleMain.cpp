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

#ifdef TSM_OWN_RUNTIME

namespace __gnu_cxx {
// For leak checkers, in libstdc++'s eh_alloc.cc; no header declares it.
void __freeres() noexcept; // NOLINT(bugprone-reserved-identifier)
} // namespace __gnu_cxx

namespace {

// A C++ runtime of the module's own keeps memory for exceptions that are thrown when there is none
// left, and gives it back with the process only: 72 KB for each time that a host loads the module.
[[gnu::destructor(101)]] void releaseRuntime()
{
    __gnu_cxx::__freeres();
}

} // namespace

#endif

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
