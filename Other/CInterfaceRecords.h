#pragma once

#include "Audio/CParamListener.h"
#include "Audio/CRegistryListener.h"
#include "Other/CParamInterfaceBase.h"

namespace tsm {

/// A client's listening to one parameter, at the base. It waits for no lock but a queue's, so that
/// it can end while another thread is inside of it.
class CParamInterfaceBase::CParamRecord : public CParamListener, public CTsmMemAllocator {
public:
    CParamRecord(CParamInterfaceBase& owner, CAudioParam& listened, std::uint32_t listenerId)
        : base(owner), param(listened), id(listenerId)
    {
        const CAudioParamLock paramLock(param);
        param.addListener(*this);
    }
    ~CParamRecord() override { attach(nullptr); }

    [[nodiscard]] CAudioParam& getParam() const noexcept { return param; }
    void onParamChanged(const void*, CAudioParam&, const CAudioParamChange& change) override
    {
        handleError(base.sendParamChange(id, param, change));
    }

private:
    CParamInterfaceBase& base;
    CAudioParam& param;
    std::uint32_t id;
};

/// A client's listening to one registry, which may be missing.
class CParamInterfaceBase::CRegistryRecord : public CRegistryListener, public CTsmMemAllocator {
public:
    CRegistryRecord(CParamInterfaceBase& owner, CAudioParamRegistry* listened,
                    std::uint32_t listenerId)
        : base(owner), registry(listened), id(listenerId)
    {
        if (registry)
            listen(*registry);
    }
    ~CRegistryRecord() override { attach(nullptr); }

    /// Null when there is none of the name that the client gave.
    [[nodiscard]] CAudioParamRegistry* getRegistry() const noexcept { return registry; }
    void onRegistryUpdate(CAudioParamRegistry::EUpdate, const void*) override
    {
        handleError(base.sendBankNames(id, *registry, false));
    }

private:
    CParamInterfaceBase& base;
    CAudioParamRegistry* registry;
    std::uint32_t id;
};

} // namespace tsm
