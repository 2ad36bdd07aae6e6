#pragma once

#include "Audio/CAudioParamFilter.h"

namespace tsm {

/// The solo stage is passed by: 1.0 as long as no group of the source is soloed.
class CAudioParamFilterBypassGroupSolo : public CAudioParamFilter {
public:
    [[nodiscard]] int minSrcCount() const noexcept override { return 1; }
    [[nodiscard]] int minDstCount() const noexcept override { return 1; }
    void apply(CSlots& src, CSlots& dst, const CAudioParamChange& change,
               CAudioParamContext& context) override;
};

} // namespace tsm
