#pragma once

#include "Audio/CAudioParamSubscription.h"
#include "Audio/CModProcessSeq.h"

namespace tsm {

class CModResamplerDef;

/// Raises the rate, or takes it down again, by a power of two that parameters choose: a chain of
/// stages that double or halve it, each with its filter.
///
/// The filter at the lowest raised rate is the steep one, since the band and its image stand close
/// there; the others have room. A change of the factor rebuilds the chain at once.
class CModResampler : public CModProcessSeq {
public:
    /// Errors: a stage's definition isn't there.
    [[nodiscard]] CError* init() override;
    void update() override;

private:
    [[nodiscard]] bool isUp() const;
    [[nodiscard]] CError* findDefinition(const CAudioProcessDefBase*& target,
                                         const char* name) const;
    [[nodiscard]] int chooseStageCount() const;
    [[nodiscard]] CError* setStageCount(int count);
    [[nodiscard]] CError* addPair();
    [[nodiscard]] CError* addStage(int index, const CAudioProcessDefBase& stage, const char* name);

    const CAudioProcessDefBase* rateStage = nullptr; // all three shared
    const CAudioProcessDefBase* steepFilter = nullptr;
    const CAudioProcessDefBase* softFilter = nullptr;
    CAudioParamSubscriptionPtr mode;
    CAudioParamSubscriptionPtr hostMode;
    std::uint32_t dirtyGroups = 0;
};

} // namespace tsm
