#pragma once

#include "Audio/Converters/CAudioParamConverter.h"

namespace tsm {

/// Times in seconds, shown in units of `scale` seconds. The mapping is logarithmic, linear or, by
/// default, a square law.
class CAudioParamConverterTime : public CAudioParamConverter {
public:
    void format(CString& out, const CAudioParamInfo& info, int e, double real,
                EAudioParamFormat mode) const override;
    [[nodiscard]] double normToReal(const CAudioParamInfo& info, int e, double x) const override;
    [[nodiscard]] double realToNorm(const CAudioParamInfo& info, int e, double r) const override;
    /// Errors: a scale of 0 or below.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

protected:
    [[nodiscard]] double toDisplay(double real) const override;
    [[nodiscard]] double toReal(double display) const override;

private:
    bool isLog = false;
    double scale = 1.0;
    bool isExact = false;
    std::int32_t isPrecise = 0; // 0 or 1: decimals more
};

} // namespace tsm
