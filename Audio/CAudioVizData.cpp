#include "Audio/CAudioVizData.h"

#include "Audio/CAudioParamShape.h"
#include "Core/CInputStream.h"
#include "Core/COutputStream.h"

#include <cmath>

namespace tsm {

namespace {

// Far above what a process can have; readers make room by these numbers.
constexpr std::uint32_t kMaxChannels = 256;

} // namespace

CError* CAudioVizData::write(COutputStream& stream) const
{
    TSM_TRY(stream.writeValue(index));
    TSM_TRY(stream.writeValue(group));
    TSM_TRY(stream.writeValue(element));
    TSM_TRY(stream.writeValue(time));
    TSM_TRY(stream.writeValue(slot));
    return nullptr;
}

CError* CAudioVizData::read(CInputStream& stream)
{
    TSM_TRY(stream.readValue(index));
    TSM_TRY(stream.readValue(group));
    TSM_TRY(stream.readValue(element));
    TSM_TRY(stream.readValue(time));
    TSM_TRY(stream.readValue(slot));
    if (index >= kMaxChannels || group >= kMaxParamGroups || element >= kMaxParamElements)
        TSM_FAIL("@tsmstr_CAudioVizData_read_PlaceError "
                 "A visualisation record is of no possible channel.");
    if (!std::isfinite(time))
        TSM_FAIL("@tsmstr_CAudioVizData_read_TimeError A visualisation record has no valid time.");
    return nullptr;
}

} // namespace tsm
