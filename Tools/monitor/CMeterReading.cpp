#include "Tools/monitor/CMeterReading.h"

#include "Other/CInterfaceFields.h"

namespace tsm {
namespace {

constexpr std::uint32_t kMeterType = 0;
constexpr std::uint32_t kMeterBytes = 40;

CError* readRecord(CInputStream& stream, CMeterReading& reading, bool& isMeter)
{
    std::uint32_t type = 0;
    std::uint32_t bytes = 0;
    TSM_TRY(readFields(stream, type, bytes));
    isMeter = type == kMeterType;
    if (bytes > static_cast<std::uint32_t>(INT32_MAX) || (isMeter && bytes < kMeterBytes))
        TSM_FAIL("a meter's record has a wrong size");
    std::uint32_t used = 0;
    if (isMeter) {
        std::uint32_t element = 0;
        std::int32_t slot = 0;
        TSM_TRY(readFields(stream, reading.channel, reading.group, element, reading.time, slot,
                           reading.rms, reading.peak));
        used = kMeterBytes;
    }
    TSM_TRY(stream.skip(static_cast<int>(bytes - used)));
    return nullptr;
}

} // namespace

CError* readMeterData(CInputStream& stream, const std::function<void(const CMeterReading&)>& take)
{
    double now = 0.0;
    std::uint32_t count = 0;
    TSM_TRY(readFields(stream, now, count));
    while (count > 0) {
        CString name;
        TSM_TRY(readField(stream, name));
        CMeterReading reading;
        reading.meter = name.substring(name.findLast('.') + 1).toUtf8();
        for (; count > 0; --count) {
            bool isMeter = false;
            TSM_TRY(readRecord(stream, reading, isMeter));
            if (isMeter)
                take(reading);
        }
        TSM_TRY(readField(stream, count));
    }
    return nullptr;
}

} // namespace tsm
