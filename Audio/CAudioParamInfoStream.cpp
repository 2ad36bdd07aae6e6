#include "Audio/CAudioParamInfo.h"
#include "Core/CText.h"

#include <cmath>

namespace tsm {

namespace {

constexpr std::uint32_t kVersion = 1;

CError* writeFlag(COutputStream& stream, bool flag)
{
    TSM_TRY(stream.writeValue<std::uint32_t>(flag ? 1 : 0));
    return nullptr;
}

CError* readFlag(CInputStream& stream, bool& flag)
{
    std::uint32_t number = 0;
    TSM_TRY(stream.readValue(number));
    flag = number != 0;
    return nullptr;
}

} // namespace

CError* CAudioParamInfo::save(COutputStream& stream) const
{
    TSM_TRY(stream.writeValue(kVersion));
    TSM_TRY(writeFlag(stream, isGlobal));
    TSM_TRY(writeFlag(stream, isStorable));
    TSM_TRY(writeFlag(stream, isPersistent));
    TSM_TRY(stream.writeString(visualName));
    TSM_TRY(stream.writeString(fullName));
    TSM_TRY(stream.writeString(paramRegistry));
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(shape.elementSize)));
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(shape.dataType)));
    TSM_TRY(writeFlag(stream, shape.isSingleGroup));
    TSM_TRY(writeFlag(stream, shape.isSingleElement));
    for (int e = 0; e < shape.elementSize; ++e) {
        TSM_TRY(stream.writeString(converterNames[e]));
        TSM_TRY(stream.writeValue(minValues[e]));
        TSM_TRY(stream.writeValue(maxValues[e]));
    }
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(stateNames.getCount())));
    for (int i = 0; i < stateNames.getCount(); ++i) {
        TSM_TRY(stream.writeString(stateNames.getFull(i)));
        TSM_TRY(stream.writeString(stateNames.getShort(i)));
    }
    TSM_TRY(defaults.save(stream));
    return nullptr;
}

CError* CAudioParamInfo::load(CInputStream& stream, CObject& finder)
{
    std::uint32_t version = 0;
    TSM_TRY(stream.readValue(version));
    if (version != kVersion)
        TSM_FAIL("@tsmstr_CAudioParamInfo_load_VersionError Unsupported data set version %1.",
                 toString(version));
    TSM_TRY(readFlag(stream, isGlobal));
    TSM_TRY(readFlag(stream, isStorable));
    TSM_TRY(readFlag(stream, isPersistent));
    TSM_TRY(stream.readString(visualName));
    TSM_TRY(stream.readString(fullName));
    TSM_TRY(stream.readString(paramRegistry));
    TSM_TRY(loadShape(stream));
    TSM_TRY(loadConverters(stream, finder));
    TSM_TRY(loadStates(stream));
    TSM_TRY(loadDefaults(stream));
    return nullptr;
}

CError* CAudioParamInfo::loadShape(CInputStream& stream)
{
    std::uint32_t elementSize = 0;
    std::uint32_t dataType = 0;
    TSM_TRY(stream.readValue(elementSize));
    TSM_TRY(stream.readValue(dataType));
    TSM_TRY(readFlag(stream, shape.isSingleGroup));
    TSM_TRY(readFlag(stream, shape.isSingleElement));
    if (dataType > static_cast<std::uint32_t>(EAudioParamType::Raw))
        TSM_FAIL("@tsmstr_CAudioParamInfo_load_TypeError Unknown data type %1 encountered",
                 toString(dataType));
    const std::uint32_t limit = dataType == 0 ? kMaxParamElementSize : 1;
    if (elementSize < 1 || elementSize > limit)
        TSM_FAIL("@tsmstr_CAudioParamInfo_load_InvalidElementSize "
                 "Invalid element size %1 specified.",
                 toString(elementSize));
    shape.elementSize = static_cast<std::int32_t>(elementSize);
    shape.dataType = static_cast<EAudioParamType>(dataType);
    return nullptr;
}

CError* CAudioParamInfo::loadConverters(CInputStream& stream, CObject& finder)
{
    COwnedArray<CString> names;
    minValues.resize(shape.elementSize);
    maxValues.resize(shape.elementSize);
    for (int e = 0; e < shape.elementSize; ++e) {
        TSM_TRY(stream.readString(names.create()));
        TSM_TRY(stream.readValue(minValues[e]));
        TSM_TRY(stream.readValue(maxValues[e]));
        if (!std::isfinite(minValues[e]) || !std::isfinite(maxValues[e]))
            TSM_FAIL("The limits of parameter '%1' are no numbers.", fullName);
    }
    TSM_TRY(parseConverterNames(finder, names));
    return nullptr;
}

CError* CAudioParamInfo::loadStates(CInputStream& stream)
{
    std::uint32_t count = 0;
    TSM_TRY(stream.readValue(count));
    // Each state has to bring its bytes, so that the count takes no memory by itself.
    for (; count > 0; --count) {
        CString fullState;
        CString shortState;
        TSM_TRY(stream.readString(fullState));
        TSM_TRY(stream.readString(shortState));
        stateNames.add(fullState, shortState);
    }
    return nullptr;
}

CError* CAudioParamInfo::loadDefaults(CInputStream& stream)
{
    COwnedArray<CAudioParamChange> changes;
    defaults.reset(shape);
    TSM_TRY(defaults.load(stream, -1, fullName, changes));
    for (CAudioParamChange& change : changes) {
        // The first group is the fallback too.
        if (change.group == 0)
            change.group = kAllParamGroups;
        defaults.apply(change);
    }
    return nullptr;
}

} // namespace tsm
