#include "Audio/CAudioVizReader.h"

#include "Audio/CAudioVizCollector.h"
#include "Audio/CAudioVizDataMeter.h"
#include "Core/CInputStream.h"
#include "Core/CText.h"

#include <cmath>

namespace tsm {

namespace {

constexpr std::uint32_t kMaxBodyBytes = 1 << 20; // of records that are passed over

} // namespace

CError* CAudioVizReader::begin(double& now)
{
    TSM_TRY(stream.readValue(now));
    if (!std::isfinite(now))
        TSM_FAIL("@tsmstr_CAudioVizReader_begin_TimeError "
                 "The visualisation stream has no valid time.");
    return nullptr;
}

CError* CAudioVizReader::next(CPtr<CAudioVizData>& record)
{
    record.reset();
    while (!record && !isEnd) {
        if (left == 0)
            TSM_TRY(beginSource());
        else
            TSM_TRY(readRecord(record));
    }
    return nullptr;
}

CError* CAudioVizReader::beginSource()
{
    TSM_TRY(stream.readValue(left));
    isEnd = left == 0;
    if (isEnd)
        return nullptr;
    if (left > static_cast<std::uint32_t>(CAudioVizCollector::kMaxRecords))
        TSM_FAIL("@tsmstr_CAudioVizReader_beginSource_CountError "
                 "Invalid visualisation record count %1.",
                 toString(left));
    TSM_TRY(stream.readString(sourceName));
    return nullptr;
}

CError* CAudioVizReader::readRecord(CPtr<CAudioVizData>& record)
{
    std::uint32_t type = 0;
    std::uint32_t size = 0;
    TSM_TRY(stream.readValue(type));
    TSM_TRY(stream.readValue(size));
    const bool isMeter = type == static_cast<std::uint32_t>(EAudioVizType::Meter);
    if (isMeter ? size != CAudioVizDataMeter::kBodyBytes : size > kMaxBodyBytes)
        TSM_FAIL("@tsmstr_CAudioVizReader_readRecord_SizeError "
                 "Invalid size %1 of a visualisation record of type %2.",
                 toString(size), toString(type));
    --left;
    if (!isMeter)
        return stream.skip(static_cast<int>(size));
    CPtr<CAudioVizData> made(new CAudioVizDataMeter);
    TSM_TRY(made->read(stream));
    record = std::move(made);
    return nullptr;
}

} // namespace tsm
