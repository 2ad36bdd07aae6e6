#pragma once

#include "Core/CArray.h"
#include "Core/CString.h"

#include <cstdint>

namespace tsm {

/// A table of total latencies by sample rate.
class CLatencyDef : public CCheckedObject {
public:
    /// Reads items "highest rate in Hz=samples", divided by semicolons. An item of another form, a
    /// rate below 1 and a negative latency are left out. [setup]
    void readLatencies(const CString& text);
    /// The latency of the first item whose highest rate isn't below `rate`; -1 without one. [any]
    [[nodiscard]] std::int32_t findLatency(double rate) const noexcept;

private:
    struct CEntry {
        std::int32_t rateLimit;
        std::int32_t latency;
    };

    CArray<CEntry> entries;
};

} // namespace tsm
