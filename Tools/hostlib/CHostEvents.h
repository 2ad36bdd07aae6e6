#pragma once

#include "Audio/VST/FObject.h"
#include "Audio/VST/Interfaces/IEventList.h"

#include <vector>

namespace tsm {

/// The events of a block. [audio]
class CHostEvents : public Steinberg::FObject, public Steinberg::Vst::IEventList {
public:
    Steinberg::tresult queryInterface(const Steinberg::TUID wanted, void** obj) override
    {
        if (giveInterface<Steinberg::Vst::IEventList>(wanted, obj, this))
            return Steinberg::kResultOk;
        return FObject::queryInterface(wanted, obj);
    }
    TSM_VST_REFCOUNT(Steinberg::FObject)

    Steinberg::int32 getEventCount() override
    {
        return static_cast<Steinberg::int32>(events.size());
    }
    Steinberg::tresult getEvent(Steinberg::int32 index, Steinberg::Vst::Event& e) override
    {
        if (index < 0 || index >= getEventCount())
            return Steinberg::kResultFalse;
        e = events[static_cast<std::size_t>(index)];
        return Steinberg::kResultTrue;
    }
    Steinberg::tresult addEvent(Steinberg::Vst::Event& e) override
    {
        events.push_back(e);
        return Steinberg::kResultTrue;
    }
    void clear() { events.clear(); }

private:
    std::vector<Steinberg::Vst::Event> events;
};

} // namespace tsm
