#pragma once

#include "Audio/CAudioModule.h"
#include "Audio/Filters/CAudioFilter.h"
#include "Audio/Filters/CFIRFilter.h"
#include "Core/COwnedArray.h"
#include "Core/CPtr.h"

namespace tsm {

/// The filter of one channel. Its latency is the filter's own and, where the definition doesn't ask
/// for none, that of a block of 2^`latency` samples. Without a filter the signal passes as it is.
class CModFilterFIRModule : public CAudioModule {
public:
    void reset() override;
    /// Designs the filter anew. Allocates.
    void update() override;
    void registerParams() override;

    /// [audio] Takes a block from the pool for each module that filters.
    static void processModules(CAudioModule* const* modules, int count);

private:
    static constexpr int kParamCount = 7;

    [[nodiscard]] double read(int slot, double otherwise) const;
    [[nodiscard]] bool isDesignBound() const noexcept;
    void design(COwnedArray<CAudioFilter>& filters) const;
    void use(const CAudioFilter& filter);
    void process();

    CAudioModuleParam params[kParamCount];
    CPtr<CFIRFilter> filter;
};

} // namespace tsm
