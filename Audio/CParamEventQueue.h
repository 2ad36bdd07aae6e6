#pragma once

#include "Core/CArray.h"

#include <cstdint>

namespace tsm {

/// Something that the host wants at a sample of its block.
struct CParamEvent {
    static constexpr std::uint32_t kParamChange = 1;

    std::uint32_t offset = 0; // samples from the block's beginning
    std::uint32_t kind = kParamChange;
    std::int32_t index = 0; // of the parameter
    double value = 0.0;
};

/// The events of one host block, in order of their offsets; events of one offset keep the order in
/// which they came.
///
/// The room is taken once, so that queueing never allocates. When it is full, a parameter change
/// overwrites the value of the last queued change of its parameter: the parameter still ends where
/// the host wants it. With no such change, and for other kinds, the event is dropped.
/// [audio] all but reserve().
class CParamEventQueue : public CCheckedObject {
public:
    static constexpr int kDefaultRoom = 4096;

    CParamEventQueue() { reserve(kDefaultRoom); }

    /// Makes room for `count` events. [setup]
    void reserve(int count) { events.reserve(count); }
    /// Enters an event at its place; ones that were read already stay read.
    void add(const CParamEvent& event) noexcept;
    /// Reading begins anew with the first event.
    void rewind() noexcept { readIndex = 0; }
    /// The next event, or null.
    [[nodiscard]] const CParamEvent* peek() const noexcept
    {
        return readIndex < events.getCount() ? &events[readIndex] : nullptr;
    }
    void skip() noexcept { ++readIndex; }
    void clear() noexcept;

private:
    void overwriteLast(const CParamEvent& event) noexcept;

    CArray<CParamEvent, 1> events;
    int readIndex = 0;
};

} // namespace tsm
