#pragma once

#include "Audio/VST/Interfaces/IComponent.h"

#include <string>

namespace Steinberg::Vst {

/// A bus of a component; inactive until the host activates it, whatever its flags.
class Bus {
public:
    /// `flags` are those of BusInfo.
    Bus(const TChar* busName, BusType busType, uint32 busFlags);
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;
    virtual ~Bus() = default;

    [[nodiscard]] bool isActive() const { return isOn; }
    void setActive(TBool state) { isOn = state != 0; }
    [[nodiscard]] virtual int32 getChannelCount() const = 0;
    /// Writes all but media type and direction, which the list knows.
    void getInfo(BusInfo& info) const;

private:
    std::u16string name;
    BusType type;
    uint32 flags;
    bool isOn = false;
};

} // namespace Steinberg::Vst
