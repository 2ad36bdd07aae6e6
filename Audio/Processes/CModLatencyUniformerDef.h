#pragma once

#include "Audio/CAudioProcessDefBase.h"
#include "Audio/Processes/CLatencyDef.h"

namespace tsm {

/// A definition that runs as a `CModLatencyUniformer`. Tag `audio:modLatencyUniformer`.
class CModLatencyUniformerDef : public CAudioProcessDefBase, public CLatencyDef {
public:
    /// Reads the table from the attribute `latencies`. Errors: the base's. [setup]
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CAudioProcessBase* createInstance() const override;
};

} // namespace tsm
