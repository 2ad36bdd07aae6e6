#pragma once

#include "Audio/CAudioProcessDefBase.h"

namespace tsm {

/// A definition that runs as a `CModFilterFIR`. Tag `audio:modFilterFIR`.
class CModFilterFIRDef : public CAudioProcessDefBase {
public:
    /// Reads the attribute `is-zero-latency`. Errors: the base's. [setup]
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CAudioProcessBase* createInstance() const override;

    /// The filter has no latency but its own delay.
    [[nodiscard]] bool getIsZeroLatency() const noexcept { return isZeroLatency; }

private:
    bool isZeroLatency = false;
};

} // namespace tsm
