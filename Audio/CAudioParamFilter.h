#pragma once

#include "Audio/CAudioParam.h"
#include "Core/COwnedArray.h"

#include <optional>

namespace tsm {

class CAudioProcessBase;

/// Computes parameters from a parameter that changes, in the same transaction.
///
/// A filter runs on the thread of the change, under the locks of all its parameters; what it writes
/// is in the same batch and undo record as the change. It ends before its collector.
class CAudioParamFilter : public CCheckedObject {
public:
    static constexpr int kMaxParams = 9;

    /// A parameter that is locked for one run.
    struct CSlot {
        CAudioParam* param = nullptr;
        const CAudioParamInfo* info = nullptr;
        const CAudioParamStorage* values = nullptr;
        std::optional<CAudioParamLock> lock = std::nullopt;
    };
    using CSlots = CSlot[kMaxParams];

    CAudioParamFilter() = default;
    CAudioParamFilter(const CAudioParamFilter&) = delete;
    CAudioParamFilter& operator=(const CAudioParamFilter&) = delete;
    /// Leaves the sources.
    virtual ~CAudioParamFilter();

    /// Finds or makes the parameters of these full names. `process` is kept for those who ask.
    /// Errors: too few or too many names.
    [[nodiscard]] virtual CError* init(CAudioProcessBase* process,
                                       CAudioParamCollector& paramCollector,
                                       const COwnedArray<CString>& srcNames,
                                       const COwnedArray<CString>& dstNames);
    [[nodiscard]] virtual int minSrcCount() const noexcept = 0;
    [[nodiscard]] virtual int minDstCount() const noexcept = 0;
    /// Writes the destinations for a change of a source. The base does it element by element with
    /// compute(): a destination without a result of its own takes the value of the source of the
    /// same number.
    virtual void apply(CSlots& src, CSlots& dst, const CAudioParamChange& change,
                       CAudioParamContext& context);
    /// The results for one element, at most kMaxParams; returns their count. The base gives none.
    virtual int compute(const CSlots& src, std::int32_t group, std::int32_t element,
                        double* results) const;

    /// Enters the filter at its sources and computes the destinations once. [setup]
    void attach();
    /// One run for a change of a source, whose lock the caller holds.
    void run(const CAudioParamChange& change, CAudioParamContext& context);

    [[nodiscard]] CAudioProcessBase* getOwner() const noexcept { return owner; }

protected:
    [[nodiscard]] int getSrcCount() const noexcept { return srcParams.getCount(); }
    [[nodiscard]] int getDstCount() const noexcept { return dstParams.getCount(); }
    /// Writes one number to a destination, as the whole of its group.
    static void writeWhole(CSlot& dst, std::int32_t group, double value,
                           CAudioParamContext& context);

private:
    using CParams = CArray<CAudioParam*, kMaxParams>;

    [[nodiscard]] CError* checkCounts(int srcCount, int dstCount) const;
    static void lockSlots(const CParams& params, CSlots& slots);
    static void unlockSlots(CSlots& slots);
    [[nodiscard]] static bool haveValues(const CSlots& slots);
    void runAtAttach(const CAudioParam& source);
    [[nodiscard]] int elementCountFor(const CSlots& src, const CAudioParamChange& change) const;
    void computeValues(const CSlots& src, int dst, const CAudioParamChange& change,
                       CAudioParamChange& result) const;

    bool attached = false;
    CAudioProcessBase* owner = nullptr;
    CAudioParamCollector* collector = nullptr;
    CParams srcParams;
    CParams dstParams;
};

} // namespace tsm
