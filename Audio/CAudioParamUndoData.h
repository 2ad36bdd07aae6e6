#pragma once

#include "Audio/CAudioParamContext.h"
#include "Audio/CAudioParamUndoEntry.h"
#include "Core/CString.h"

namespace tsm {

class CAudioParamCollector;

/// One value of a parameter on which a gesture is open towards the host.
struct CAudioParamEdit {
    CAudioParam* param;
    std::int32_t group;
    std::int32_t element;
};

/// One step that can be taken back, by a name that the user sees. While it is open it records the
/// changes whose context it stands in; it belongs to the thread that makes them.
///
/// The first image before the step stands, as does the last one behind it.
class CAudioParamUndoData : public CAudioParamUndoRecorder, public CTsmMemAllocator {
public:
    explicit CAudioParamUndoData(const CString& title) : name(title) {}
    /// A deep copy.
    CAudioParamUndoData(const CAudioParamUndoData& other);
    CAudioParamUndoData& operator=(const CAudioParamUndoData&) = delete;
    ~CAudioParamUndoData() override;

    void recordBefore(const CString& paramName, std::int32_t group,
                      const CAudioParamStorage& storage, bool asEmpty) override;
    void recordAfter(const CString& paramName, std::int32_t group,
                     const CAudioParamStorage& storage, bool asEmpty) override;

    /// True when nothing was recorded.
    [[nodiscard]] bool isEmpty() const noexcept;
    /// Takes a later step on the very same values in: this one's name and images before, the
    /// other's behind. False, with nothing changed, when they don't go together.
    bool merge(CAudioParamUndoData& newer);
    /// Gives the parameters the values of one side, in one change for the engine. Leaves no trace
    /// in any step.
    void apply(CAudioParamCollector& collector, bool isRedo) const;

    /// Notes gestures on the elements of a change, which is valid and in normal form, and appends
    /// those that are new to `begun`. A change of all groups counts as one of the first.
    void beginEdits(CAudioParam& param, const CAudioParamChange& change,
                    CArray<CAudioParamEdit>& begun);
    /// Hands out all open gestures and forgets them, and parameters of which nothing else is kept.
    void takeEdits(CArray<CAudioParamEdit>& edits);

    CString name;
    bool isMergeable = false;
    std::int32_t mergeId = -1; // steps of the same id merge; -1 for none
    /// By full name.
    CMap<CString, CAudioParamUndoEntry*> params;

private:
    [[nodiscard]] bool canMerge(const CAudioParamUndoData& newer) const;
};

} // namespace tsm
