#include "Audio/CAudioParamInfo.h"

#include "Audio/Converters/CAudioParamConverter.h"
#include "Core/CText.h"

namespace tsm {

namespace {

// The range of what isn't a number: ids.
constexpr double kMaxItemValue = 8388608.0; // 2^23

} // namespace

bool CAudioParamInfo::isSameAs(const CAudioParamInfo& other) const noexcept
{
    return shape == other.shape && fullName == other.fullName;
}

CPtr<CAudioParamInfo> CAudioParamInfo::cloneAs(const CString& newFullName) const
{
    CPtr<CAudioParamInfo> copy(new CAudioParamInfo);
    copy->shape = shape;
    copy->isGlobal = isGlobal;
    copy->isStorable = isStorable;
    copy->isPersistent = isPersistent;
    copy->visualName = visualName == fullName ? newFullName : visualName;
    copy->fullName = newFullName;
    copy->paramRegistry = paramRegistry;
    for (const CString& name : converterNames)
        copy->converterNames.create(name);
    copy->converters = converters;
    copy->minValues = minValues;
    copy->maxValues = maxValues;
    for (int i = 0; i < stateNames.getCount(); ++i)
        copy->stateNames.add(stateNames.getFull(i), stateNames.getShort(i));
    copy->defaults = defaults;
    return copy;
}

CError* CAudioParamInfo::parseConverterNames(CObject& finder, const COwnedArray<CString>& names)
{
    if (names.getCount() < shape.elementSize)
        TSM_FAIL("@tsmstr_CAudioParamInfo_parseConverterNames_NotEnoughConverters "
                 "Not enough converters defined %1 (should be %2).",
                 toString(names.getCount()), toString(shape.elementSize));
    for (int e = 0; e < shape.elementSize; ++e) {
        const auto* converter = dynamic_cast<CAudioParamConverter*>(finder.findObject(names[e]));
        if (!converter)
            TSM_FAIL("@tsmstr_CAudioParamInfo_parseConverterNames_ConverterNotFound "
                     "Audio parameter converter '%1' not found.",
                     names[e]);
        converters.add(converter);
        converterNames.create(names[e]);
    }
    return nullptr;
}

CError* CAudioParamInfo::parseMinMaxValues(const CString& minText, const CString& maxText)
{
    // While they are read they are asked for themselves: a state's name counts from the minimum.
    minValues.resize(shape.elementSize, 0.0);
    maxValues.resize(shape.elementSize, kMaxItemValue);
    if (shape.dataType != EAudioParamType::Number)
        return nullptr;
    COwnedArray<CString> minPieces;
    COwnedArray<CString> maxPieces;
    splitWords(minText, minPieces);
    splitWords(maxText, maxPieces);
    if (minPieces.getCount() < shape.elementSize)
        TSM_FAIL("@tsmstr_CAudioParamInfo_parseMinMaxValues_NotEnoughMin "
                 "Not enough minimum values defined %1 (should be %2).",
                 toString(minPieces.getCount()), toString(shape.elementSize));
    if (maxPieces.getCount() < shape.elementSize)
        TSM_FAIL("@tsmstr_CAudioParamInfo_parseMinMaxValues_NotEnoughMax "
                 "Not enough maximum values defined %1 (should be %2).",
                 toString(maxPieces.getCount()), toString(shape.elementSize));
    for (int e = 0; e < shape.elementSize; ++e) {
        bool ok = false;
        minValues[e] = getConverter(e).parseUnclamped(*this, e, minPieces[e], ok);
        maxValues[e] = getConverter(e).parseUnclamped(*this, e, maxPieces[e], ok);
        if (maxValues[e] == minValues[e])
            TSM_FAIL("@tsmstr_CAudioParamInfo_parseMinMaxValues_Zero "
                     "Zero default min-max values difference detected in element %1.",
                     toString(e));
    }
    return nullptr;
}

CError* CAudioParamInfo::parseStateNames(const CString& text)
{
    if (text.startsWith("@"))
        TSM_FAIL("@tsmstr_CAudioParamInfo_parseStateNames_NoData "
                 "No state names data available in '%1'.",
                 text);
    stateNames.parse(text);
    return nullptr;
}

} // namespace tsm
