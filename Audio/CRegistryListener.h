#pragma once

#include "Audio/CAudioParamRegistry.h"

namespace tsm {

/// Hears of all that a registry tells: another program, another name, an activation. Called with
/// none of the registry's locks held. A class that uses members of its own leaves the registry in
/// its destructor, by `attach(nullptr)`.
class CRegistryListener : public CUpdateListener {
public:
    /// Leaves the former registry and joins this one. [any]
    void listen(CAudioParamRegistry& registry)
    {
        attach(&registry, CAudioParamRegistry::kAnyUpdate);
    }
    /// `sender` is who made the change, as it named itself; may be null.
    virtual void onRegistryUpdate(CAudioParamRegistry::EUpdate update, const void* sender) = 0;

    void onUpdate(const CUpdateMessage& message) final;
};

/// Hears when another program of a master registry is current, or the programs have other names, so
/// that the host can be told. Otherwise as above.
class CProgramChangeListener : public CUpdateListener {
public:
    void listen(CAudioParamRegistry& registry)
    {
        attach(&registry, CAudioParamRegistry::kProgramChange);
    }
    virtual void onProgramChange(const void* sender) = 0;

    void onUpdate(const CUpdateMessage& message) final { onProgramChange(message.sender); }
};

} // namespace tsm
