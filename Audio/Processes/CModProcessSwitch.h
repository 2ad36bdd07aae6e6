#pragma once

#include "Audio/CAudioParamSubscription.h"
#include "Audio/CModProcessSeq.h"

namespace tsm {

/// One of several processes, chosen by a parameter. A change takes effect at once, without a
/// crossfade: the processes differ in latency.
class CModProcessSwitch : public CModProcessSeq {
public:
    [[nodiscard]] CError* init() override;
    void update() override;

private:
    [[nodiscard]] int readIndex(const CAudioParamSubscriptionPtr& slot, int otherwise) const;
    [[nodiscard]] CError* replaceChild(int newIndex);

    CAudioParamSubscriptionPtr indexParam;
    CAudioParamSubscriptionPtr countParam;
    std::uint32_t dirtyGroups = 0;
    bool hasChosen = false;
    int index = 0;
    int count = 0;
};

} // namespace tsm
