#pragma once

#include "Core/CError.h"
#include "Core/CMemory.h"

#include <cstdint>

namespace tsm {

class CInputStream;
class COutputStream;

/// Kinds of records, as they stand in a stream. A reader skips those that it doesn't know.
enum class EAudioVizType : std::int32_t { Meter = 0, Info = 1, Spectrum = 3, VScope = 4, Rgb = 5 };

/// A small record from a module to the windows: what was measured where, and when.
///
/// The audio thread makes it in a block of the block allocator; the thread that answers a window
/// ends it.
class CAudioVizData : public CCheckedObject, public CTsmMemAllocator {
public:
    explicit CAudioVizData(EAudioVizType kind) noexcept : type(kind) {}
    CAudioVizData(const CAudioVizData&) = delete;
    CAudioVizData& operator=(const CAudioVizData&) = delete;
    virtual ~CAudioVizData() = default;

    /// Writes the body: the fields below in their order, then those of the kind. Errors: the
    /// stream's. [any]
    [[nodiscard]] virtual CError* write(COutputStream& stream) const;
    /// Reads a body. Errors: the stream's, places that no module can have, a time that isn't
    /// finite. [any]
    [[nodiscard]] virtual CError* read(CInputStream& stream);

    [[nodiscard]] EAudioVizType getType() const noexcept { return type; }

    static constexpr std::int32_t kNoSlot = -1;

    std::uint32_t index = 0; // channel of the module; 0 when it has none
    std::uint32_t group = 0;
    std::uint32_t element = 0;   // band
    double time = 0.0;           // of the measurement, in seconds of the stream
    std::int32_t slot = kNoSlot; // of those that instances share

protected:
    static constexpr int kBaseBodyBytes = 24;

private:
    friend class CAudioVizRecords;
    EAudioVizType type;
    CAudioVizData* next = nullptr;
};

} // namespace tsm
