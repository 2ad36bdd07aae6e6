#include "Tools/monitor/CMonitorMeter.h"

#include "Audio/CAudioVizDataMeter.h"

#include <utility>

namespace tsm {

CMonitorMeter::CMonitorMeter(const CString& fullName, CTell tellReading, CTellSilence tellInactive)
    : name(fullName.substring(fullName.findLast('.') + 1).toUtf8()), tell(std::move(tellReading)),
      tellSilence(std::move(tellInactive))
{
}

void CMonitorMeter::onData(const CAudioVizData& record)
{
    if (const auto* level = dynamic_cast<const CAudioVizDataMeter*>(&record))
        tell({name, level->time, level->index, level->group, level->rms, level->peak});
}

void CMonitorMeter::onInactive()
{
    tellSilence(name);
}

} // namespace tsm
