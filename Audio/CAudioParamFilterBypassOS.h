#pragma once

#include "Audio/CAudioParamFilter.h"

namespace tsm {

/// Oversampling is passed by: 1.0 when neither the user's choice nor, where that is left to it,
/// then/// host's mode asks for any.
class CAudioParamFilterBypassOS : public CAudioParamFilter {
public:
    [[nodiscard]] int minSrcCount() const noexcept override { return 2; }
    [[nodiscard]] int minDstCount() const noexcept override { return 1; }
    void apply(CSlots& src, CSlots& dst, const CAudioParamChange& change,
               CAudioParamContext& context) override;
};

} // namespace tsm
