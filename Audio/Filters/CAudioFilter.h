#pragma once

#include "Core/CArray.h"
#include "Core/CMap.h"
#include "Core/CString.h"

namespace tsm {

/// What a generator makes: the numbers of one filter.
struct CAudioFilter {
    CArray<double> taps;     // of a filter with finite response; of others none
    CArray<double> branches; // of a half-band filter: all of branch A, then all of branch B
    int latency = 0;         // samples
};

/// The values of a filter module's parameters, by name.
class CAudioFilterParams {
public:
    void set(const char* name, double value) { values[CString(name)] = value; }
    /// The value, or `missing` without one of that name.
    [[nodiscard]] double get(const char* name, double missing) const
    {
        const double* value = values.find(name);
        return value ? *value : missing;
    }

private:
    CMap<CString, double> values;
};

} // namespace tsm
