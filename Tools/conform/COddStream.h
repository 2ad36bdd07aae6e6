#pragma once

#include "Tools/hostlib/CMemoryStream.h"

#include <limits>

namespace tsm {

/// A stream that hosts could give: one that moves few bytes in a call, or that fails at a place.
class COddStream : public CMemoryStream {
public:
    explicit COddStream(std::string content = {}) : CMemoryStream(std::move(content)) {}

    /// The most bytes that one call moves.
    void setStep(Steinberg::int32 most) { step = most; }
    /// Calls that would move bytes behind this place fail and move none.
    void setEnd(Steinberg::int64 place) { end = place; }
    /// Whether a call failed at the end.
    [[nodiscard]] bool hasFailed() const { return isFailed; }

    Steinberg::tresult read(void* buffer, Steinberg::int32 numBytes,
                            Steinberg::int32* numBytesRead) override;
    Steinberg::tresult write(void* buffer, Steinberg::int32 numBytes,
                             Steinberg::int32* numBytesWritten) override;

private:
    [[nodiscard]] bool isBeyond(Steinberg::int32 count, Steinberg::int32* moved);

    Steinberg::int32 step = std::numeric_limits<Steinberg::int32>::max();
    Steinberg::int64 end = kMaxSize;
    bool isFailed = false;
};

} // namespace tsm
