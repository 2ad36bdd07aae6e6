#pragma once

#include "Audio/CAudioParamStorage.h"
#include "Audio/CParamStateNames.h"
#include "Core/CArray.h"

namespace tsm {

class CAudioParamConverter;
class CObject;

/// The checked description of a parameter. It doesn't change once it is made and is read by any
/// thread; converters are borrowed from the shared tree.
class CAudioParamInfo : public CCheckedObject, public CTsmMemAllocator {
public:
    CAudioParamInfo() = default;
    CAudioParamInfo(const CAudioParamInfo&) = delete;
    CAudioParamInfo& operator=(const CAudioParamInfo&) = delete;

    /// True when both describe the same parameter: name and shape.
    [[nodiscard]] bool isSameAs(const CAudioParamInfo& other) const noexcept;
    /// A copy under another name, for definitions that several sources share; owned by the caller.
    [[nodiscard]] CPtr<CAudioParamInfo> cloneAs(const CString& newFullName) const;

    /// The converter of a sub-value (0 to elementSize - 1).
    [[nodiscard]] const CAudioParamConverter& getConverter(int subValue) const noexcept
    {
        return *converters[subValue];
    }

    /// Looks up the converters, one name for each sub-value, seen from `finder`.
    /// Errors: fewer than elementSize, one that isn't there.
    [[nodiscard]] CError* parseConverterNames(CObject& finder, const COwnedArray<CString>& names);
    /// Reads the limits in display form. Errors: fewer than elementSize, a range without width.
    [[nodiscard]] CError* parseMinMaxValues(const CString& minText, const CString& maxText);
    /// Reads the state names. Errors: "@name" names an item that isn't there.
    [[nodiscard]] CError* parseStateNames(const CString& text);

    /// Writes the saved form, for readers in other trees of this process.
    [[nodiscard]] CError* save(COutputStream& stream) const;
    /// Reads the saved form into this fresh object; converters are looked up from `finder`.
    /// Errors: another version, a bad shape, an unknown converter, cut data.
    [[nodiscard]] CError* load(CInputStream& stream, CObject& finder);

    CAudioParamShape shape;
    bool isGlobal = false; // also set when storable or persistent: the collector has it
    bool isStorable = false;
    bool isPersistent = false;
    CString visualName;
    CString fullName; // of the definition
    CString paramRegistry;
    COwnedArray<CString> converterNames;
    CArray<const CAudioParamConverter*, kMaxParamElementSize> converters;
    CArray<double, kMaxParamElementSize> minValues; // real form, one for each sub-value
    CArray<double, kMaxParamElementSize> maxValues;
    CParamStateNames stateNames;
    CAudioParamStorage defaults;

private:
    [[nodiscard]] CError* loadShape(CInputStream& stream);
    [[nodiscard]] CError* loadConverters(CInputStream& stream, CObject& finder);
    [[nodiscard]] CError* loadStates(CInputStream& stream);
    [[nodiscard]] CError* loadDefaults(CInputStream& stream);
};

} // namespace tsm
