#pragma once

#include "Audio/CAudioProcessBase.h"

namespace tsm {

/// Doubles the rate by a zero behind each sample, which is doubled so that the level stays once a
/// filter has taken the images away.
class CModInterpolator : public CAudioProcessBase {
public:
    void update() override;
    void process() override;
};

} // namespace tsm
