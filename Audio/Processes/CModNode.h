#pragma once

#include "Audio/CAudioProcessBase.h"

namespace tsm {

/// A named junction: hands its inputs on as they are. Inside a graph with automatic links it is
/// wired through and doesn't run.
class CModNode : public CAudioProcessBase {
public:
    void update() override;
    void process() override;
};

} // namespace tsm
