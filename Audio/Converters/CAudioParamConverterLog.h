#pragma once

#include "Audio/Converters/CAudioParamConverter.h"

namespace tsm {

/// Logarithmic mapping between positive limits. With a positive `scaleThreshold` that normalized
/// point is the real value 1, and each side of it is logarithmic by itself; `scalePower` bends the
/// whole line, or the side below.
class CAudioParamConverterLog : public CAudioParamConverter {
public:
    [[nodiscard]] double normToReal(const CAudioParamInfo& info, int e, double x) const override;
    [[nodiscard]] double realToNorm(const CAudioParamInfo& info, int e, double r) const override;
    /// Errors: a power of 0 or below, a threshold above 1.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

private:
    [[nodiscard]] bool isBent() const noexcept;

    double scalePower = 1.0;
    double scaleThreshold = -1.0;
};

} // namespace tsm
