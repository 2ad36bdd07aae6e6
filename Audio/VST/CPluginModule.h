#pragma once

#include "Audio/VST/Interfaces/IPluginFactory.h"

#include <mutex>

namespace Steinberg {

/// The life of a module: begins at the first entry, ends at the last exit, however often hosts call
/// either, and keeps the factory in between. [any]
class CPluginModule {
public:
    /// What the plug-in adds. Exceptions are caught and count as failures.
    struct CHooks {
        bool (*begin)(void* handle);      ///< handle of dlopen; the first entry only
        bool (*end)();                    ///< the last exit only, the module's factory is released
        IPluginFactory* (*makeFactory)(); ///< one reference for the caller; null is a failure
    };

    explicit CPluginModule(const CHooks& plugin) : hooks(plugin) {}

    /// False when the plug-in could not begin; that entry then doesn't count.
    bool enter(void* handle) noexcept;
    /// False for an exit without entry, and when the plug-in could not end.
    bool exit() noexcept;
    /// The one factory with a reference for the caller, made at the first call. Since some hosts
    /// drop one reference more than they have, the module's own lasts until the last exit.
    IPluginFactory* getFactory() noexcept;

private:
    CHooks hooks;
    std::mutex lock;
    int entryCount = 0;
    // Not a holder: after dlclose, at the end of static objects, nothing of it may be called.
    IPluginFactory* factory = nullptr;
};

} // namespace Steinberg
