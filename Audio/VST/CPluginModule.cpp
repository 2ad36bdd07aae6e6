#include "Audio/VST/CPluginModule.h"

#include <utility>

namespace Steinberg {

bool CPluginModule::enter(void* handle) noexcept
{
    try {
        const std::lock_guard guard(lock);
        if (entryCount == 0 && !hooks.begin(handle))
            return false;
        ++entryCount;
        return true;
    } catch (...) {
        return false;
    }
}

bool CPluginModule::exit() noexcept
{
    try {
        const std::lock_guard guard(lock);
        if (entryCount == 0)
            return false;
        if (--entryCount > 0)
            return true;
        if (IPluginFactory* last = std::exchange(factory, nullptr))
            last->release();
        return hooks.end();
    } catch (...) {
        return false;
    }
}

IPluginFactory* CPluginModule::getFactory() noexcept
{
    try {
        const std::lock_guard guard(lock);
        if (!factory)
            factory = hooks.makeFactory();
        if (factory)
            factory->addRef();
        return factory;
    } catch (...) {
        return nullptr;
    }
}

} // namespace Steinberg
