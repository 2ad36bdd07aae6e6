#include "Audio/CAudioVizDataMeter.h"

#include "Core/CInputStream.h"
#include "Core/COutputStream.h"

#include <cmath>

namespace tsm {

CError* CAudioVizDataMeter::write(COutputStream& stream) const
{
    TSM_TRY(CAudioVizData::write(stream));
    TSM_TRY(stream.writeValue(rms));
    TSM_TRY(stream.writeValue(peak));
    return nullptr;
}

CError* CAudioVizDataMeter::read(CInputStream& stream)
{
    TSM_TRY(CAudioVizData::read(stream));
    TSM_TRY(stream.readValue(rms));
    TSM_TRY(stream.readValue(peak));
    if (!std::isfinite(rms) || !std::isfinite(peak))
        TSM_FAIL("@tsmstr_CAudioVizDataMeter_read_ValueError A meter's value isn't finite.");
    return nullptr;
}

} // namespace tsm
