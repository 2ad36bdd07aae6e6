#pragma once

#include "Audio/VST/Bus.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace Steinberg::Vst {

/// The buses of one media type and direction, in order.
class BusList {
public:
    BusList(MediaType mediaType, BusDirection busDirection) : type(mediaType), dir(busDirection) {}

    /// Takes the bus and returns it.
    template <class BusClass>
    BusClass* add(std::unique_ptr<BusClass> bus)
    {
        BusClass* const added = bus.get();
        buses.push_back(std::move(bus));
        return added;
    }
    void removeAll() { buses.clear(); }

    [[nodiscard]] int32 getCount() const { return static_cast<int32>(buses.size()); }
    /// Null when there is none.
    [[nodiscard]] Bus* at(int32 index) const
    {
        const bool isThere = index >= 0 && index < getCount();
        return isThere ? buses[static_cast<std::size_t>(index)].get() : nullptr;
    }
    /// Writes every field; kInvalidArgument, with `info` untouched, when there is no such bus.
    tresult getInfo(int32 index, BusInfo& info) const
    {
        const Bus* bus = at(index);
        if (!bus)
            return kInvalidArgument;
        info.mediaType = type;
        info.direction = dir;
        bus->getInfo(info);
        return kResultTrue;
    }

private:
    MediaType type;
    BusDirection dir;
    std::vector<std::unique_ptr<Bus>> buses;
};

} // namespace Steinberg::Vst
