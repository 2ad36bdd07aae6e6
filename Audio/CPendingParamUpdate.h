#pragma once

#include "Audio/CAudioExtParamHostBridge.h"
#include "Audio/CParamListener.h"

namespace tsm {

/// Something to be told when no lock of a parameter is held any more.
class CPendingParamUpdate : public CCheckedObject, public CTsmMemAllocator {
public:
    virtual ~CPendingParamUpdate() = default;
    virtual void deliver() = 0;

    CPendingParamUpdate* next = nullptr;
};

/// A change, for the listeners of its parameter.
class CPendingParamChange : public CPendingParamUpdate {
public:
    CPendingParamChange(CUpdateNotifier& target, const void* source, std::uint64_t kind,
                        CAudioParam& param, const CAudioParamChange& madeChange);
    void deliver() override;

private:
    CUpdateNotifier& notifier;
    CAudioParamChange change;
    CParamUpdateMessage message;
};

/// A value for the host.
class CPendingHostUpdate : public CPendingParamUpdate {
public:
    CPendingHostUpdate(CAudioExtParamHostBridge& target, std::int32_t paramIndex,
                       double normalised) noexcept
        : bridge(target), index(paramIndex), value(normalised)
    {
    }
    void deliver() override { bridge.performEdit(index, value); }

private:
    CAudioExtParamHostBridge& bridge;
    std::int32_t index;
    double value;
};

} // namespace tsm
