#pragma once

#include "Audio/CAudioProcessDefBase.h"

namespace tsm {

/// A definition that runs as a `CModBankedConvolver`. Tag `audio:modBankedConvolver`; attributes
/// `fileset`, `status-param` and `latency`.
class CModBankedConvolverDef : public CAudioProcessDefBase {
public:
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CAudioProcessBase* createInstance() const override;

    /// The path of the object that holds the bank.
    [[nodiscard]] const CString& getFileSetName() const noexcept { return fileSetName; }
    /// The parameter that is told of loads, relative to the process; empty for none.
    [[nodiscard]] const CString& getStatusParam() const noexcept { return statusParam; }
    /// How late the bank's impulses have their peak, in seconds; 0 or more.
    [[nodiscard]] double getLatencySeconds() const noexcept { return latencySeconds; }

private:
    CString fileSetName;
    CString statusParam;
    double latencySeconds = 0.0;
};

} // namespace tsm
