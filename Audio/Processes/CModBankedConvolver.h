#pragma once

#include "Audio/CAudioParamSubscription.h"
#include "Audio/CAudioProcessBase.h"
#include "Audio/CDSPModDelay.h"
#include "Audio/Processes/CBankedImpulse.h"
#include "rsk/CDSPConvolverPhase.h"
#include "rsk/CDSPZeroLatencyConvolver.h"

namespace tsm {

/// Convolves all channels with a tape impulse: one of a bank, or the user's own file.
///
/// The convolution itself is without latency. What is reported is where the bank's impulses have
/// their peak, and without an impulse (switched off, or not to be loaded) the signal passes with
/// that delay. Impulses are loaded in `update`, without a crossfade; `CBankedImpulseCache` keeps
/// that short.
class CModBankedConvolver : public CAudioProcessBase {
public:
    ~CModBankedConvolver() override;
    /// Errors: no file set at the name that the definition gives.
    [[nodiscard]] CError* init() override;
    void reset() override;
    void update() override;
    void process() override;

    /// Channels that are convolved, not delayed; for tests.
    [[nodiscard]] int getFilterCount() const noexcept { return filters.getCount(); }

private:
    enum EParam { Index, FileName, Enable, ParamCount };

    /// One channel's convolver; the phase is drawn for its life.
    struct CFilter : CTsmMemAllocator {
        rsk::CDSPConvolverPhase phase;
        rsk::CDSPZeroLatencyConvolver convolver{phase.get()};
    };

    [[nodiscard]] CError* findFileSet();
    void subscribe();
    [[nodiscard]] const CAudioParamStorage* valuesOf(EParam param) const;
    [[nodiscard]] bool takeFormat();
    [[nodiscard]] bool takeChoice();
    [[nodiscard]] bool isEnabled() const;
    void resetFilters();
    void reload();
    [[nodiscard]] CError* load(CBankedImpulseRef& impulse) const;
    void setImpulse(const CBankedImpulseRef& impulse);
    void endFilters();
    void fitDelays();
    void setStatus(const CString& text);
    void processChannel(int index, const double* in, double* out, int count, double* work);

    const CFileSetObject* fileSet = nullptr; // borrowed from the shared tree
    CAudioParamSubscriptionPtr params[ParamCount];
    std::uint32_t dirtyGroups = 0;
    double rate = 0.0; // of the last load, as the count
    int channelCount = 0;
    int latency = 0;
    int index = -1;
    CString fileName;
    COwnedArray<CFilter> filters;
    int workCount = 0; // doubles of work space that a filter needs
    COwnedArray<CDSPModDelay> delays;
};

} // namespace tsm
