#include "Tools/monitor/CMeterReading.h"

#include "Audio/CAudioVizDataMeter.h"
#include "Audio/CAudioVizReader.h"

namespace tsm {

CError* readMeterData(CInputStream& stream, const std::function<void(const CMeterReading&)>& take)
{
    CAudioVizReader reader(stream);
    double now = 0.0;
    TSM_TRY(reader.begin(now));
    for (;;) {
        CPtr<CAudioVizData> record;
        TSM_TRY(reader.next(record));
        if (!record)
            return nullptr;
        const auto* level = dynamic_cast<const CAudioVizDataMeter*>(record.get());
        if (!level)
            continue;
        const CString& name = reader.getSourceName();
        take({name.substring(name.findLast('.') + 1).toUtf8(), level->time, level->index,
              level->group, level->rms, level->peak});
    }
}

} // namespace tsm
