#pragma once

#include "Audio/CAudioParamChange.h"
#include "Core/COwnedArray.h"

namespace tsm {

class CAudioParamInfo;

/// The values of one parameter: groups of elements of `elementSize` numbers, and what groups and
/// elements that aren't held read instead.
///
/// No locking: the model side's storage is guarded by the parameter's lock, the process side's
/// belongs to the audio thread. All memory comes from the block allocator.
class CAudioParamStorage : public CCheckedObject {
public:
    CAudioParamStorage() = default;
    CAudioParamStorage(CAudioParamStorage&&) noexcept = default;
    CAudioParamStorage& operator=(CAudioParamStorage&&) noexcept = default;
    CAudioParamStorage(const CAudioParamStorage& other) { *this = other; }
    CAudioParamStorage& operator=(const CAudioParamStorage& other);

    /// Forgets all values and takes a shape.
    void reset(const CAudioParamShape& newShape);
    [[nodiscard]] const CAudioParamShape& getShape() const noexcept { return shape; }

    /// False until values came: reads give the caller's default.
    [[nodiscard]] bool getHasValues() const noexcept { return hasValues; }
    [[nodiscard]] std::int32_t getGroupCount() const noexcept { return groups.getCount(); }
    /// Elements that a group holds itself; 0 for one that isn't held.
    [[nodiscard]] std::int32_t getElementCount(std::int32_t group) const noexcept;
    [[nodiscard]] std::int32_t getFallbackCount() const noexcept;

    /// A number: the group's own, else the fallback's at that element, else the fallback's first;
    /// `otherwise` while there are no values. In a single-group parameter every group is 0, in a
    /// single-element one every element. A text's or block's id.
    [[nodiscard]] double value(std::int32_t group, std::int32_t element, double otherwise = 0.0,
                               std::int32_t subValue = 0) const noexcept;
    /// The text at a place by the same rules; empty when there is none. It stays until the next
    /// change.
    [[nodiscard]] const CString& text(std::int32_t group, std::int32_t element) const noexcept;
    /// The text behind an id as it stands among the values; empty for an unknown one.
    [[nodiscard]] const CString& textOfId(double id) const noexcept;
    /// The block at a place; null when there is none.
    [[nodiscard]] const CByteBuffer* raw(std::int32_t group, std::int32_t element) const noexcept;

    /// Applies a change and leaves in it, in place of its items, those that it replaced, so that
    /// the audio thread frees none. Elements between the held ones and the change take the
    /// fallback's values. A complete change of all groups leaves group 0 alone held, gives the
    /// fallback the same values and takes over the change's shape; any other change of another
    /// shape is ignored, as is an invalid one. Tells whether it was applied. [any] Allocates from
    /// the block allocator only.
    bool apply(CAudioParamChange& change);
    /// Makes the complete change that gives another storage this one's group.
    void copyGroup(std::int32_t group, CAudioParamChange& change) const;
    /// Makes the change that gives it the value which one element reads as.
    void copyElement(std::int32_t group, std::int32_t element, CAudioParamChange& change) const;
    /// As copyGroup() for all groups, with the fallback's values.
    void copyFallback(CAudioParamChange& change) const;

    /// Reads the text of a definition: groups divided by ";", elements by ",", sub-values by
    /// blanks, in display form. Group 0 becomes the fallback. No numbers in the text make no group.
    /// Errors: a piece that its converter rejects, an element with too few sub-values.
    [[nodiscard]] CError* parseDefValues(const CAudioParamInfo& info, const CString& defText);

    /// Writes the saved form: version, shape, groups; all of them, or one alone.
    [[nodiscard]] CError* save(COutputStream& stream) const;
    [[nodiscard]] CError* saveGroup(COutputStream& stream, std::int32_t group) const;
    /// Reads the saved form as changes: one complete change for each saved group, in `changes`.
    /// With `group` above -1 a saved single group becomes that one. Group counts that don't go
    /// together (several for one, several for a single-group parameter, too many) are read over,
    /// and `changes` stays empty. Numbers that aren't finite read as the fallback's. `name` is for
    /// the log. Nothing here is changed. Errors: another version, element size or data type;
    /// damaged or cut data.
    [[nodiscard]] CError* load(CInputStream& stream, std::int32_t group, const CString& name,
                               COwnedArray<CAudioParamChange>& changes) const;

private:
    struct CGroup : CTsmMemAllocator {
        CArray<double, 2> values;
    };

    using CValues = CArray<double, 2>;

    [[nodiscard]] const double* place(std::int32_t group, std::int32_t element) const noexcept;
    [[nodiscard]] bool holdsItems() const noexcept
    {
        return shape.dataType != EAudioParamType::Number;
    }
    void holdGroup(std::int32_t group);
    void write(CValues& values, CAudioParamChange& change);
    void fillGap(CValues& values, int firstValue, int endValue);
    void shorten(CValues& values, int valueCount, CAudioParamChange& change);
    void writeItem(double& value, CAudioParamChange& change, int index);
    void writeCopy(CValues& values, CAudioParamChange& change);
    void applyComplete(CAudioParamChange& change);
    void applyToEach(CAudioParamChange& change);
    void copyValues(const double* from, int valueCount, CAudioParamChange& change) const;

    [[nodiscard]] CError* parseGroup(const CAudioParamInfo& info, const CString& groupText,
                                     CAudioParamChange& change) const;
    [[nodiscard]] CError* parseElement(const CAudioParamInfo& info, const CString& elementText,
                                       int place, CAudioParamChange& change) const;
    [[nodiscard]] CError* saveGroups(COutputStream& stream, int first, int count) const;
    [[nodiscard]] CError* saveItems(COutputStream& stream, int first, int count) const;
    [[nodiscard]] CError* loadHead(CInputStream& stream) const;
    [[nodiscard]] CError* loadGroup(CInputStream& stream, CAudioParamData& table,
                                    CAudioParamChange& change) const;
    [[nodiscard]] CError* loadElement(CInputStream& stream, int element, CAudioParamData& table,
                                      CAudioParamChange& change) const;

    CAudioParamShape shape;
    bool hasValues = false;
    COwnedArray<CGroup> groups;
    CArray<double, 2> fallback;
    CAudioParamData data;
};

} // namespace tsm
