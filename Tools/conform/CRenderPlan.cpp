#include "Tools/conform/CRenderPlan.h"

#include <algorithm>

namespace tsm {

CError* CRenderPlan::render(const CPlugin& plugin, CFindings& findings, CChannels& out) const
{
    CLivePlugin live;
    TSM_TRY(live.start(plugin, setUp, findings, isInPlace));
    if (!values.empty())
        live.setAll(values);
    CBlockRun& run = live.getRun();
    const CChannels in = makeNoise(std::max(run.getInputCount(), 1), frameCount, level, seed);
    out.clear();
    std::size_t next = 0;
    for (std::size_t at = 0; at < frameCount;) {
        const auto left = static_cast<int>(frameCount - at);
        const int count = std::min(sizes[next++ % sizes.size()], left);
        const std::size_t end = at + static_cast<std::size_t>(count);
        for (const CRenderPoint& point : points)
            if (point.frame >= at && point.frame < end)
                run.addPoint(point.id, static_cast<int>(point.frame - at), point.value);
        run.process(in, at, count, out);
        at = end;
    }
    return nullptr;
}

} // namespace tsm
