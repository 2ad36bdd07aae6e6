#pragma once

#include "Audio/CAudioVizCollector.h"
#include "Audio/CAudioVizDataMeter.h"
#include "Audio/CAudioVizReader.h"
#include "Tests/Support/CTestStreams.h"
#include "Tests/Support/CTestTree.h"

namespace tsm {

/// A meter's record as a window has read it.
struct CSeenLevel {
    std::string source;
    std::uint32_t index;
    std::uint32_t group;
    double time;
    double rms;
    double peak;
};

/// Reads a whole stream; `now` and `seen` hold what came before an error.
inline CError* readVizStream(CInputStream& stream, double& now, std::vector<CSeenLevel>& seen)
{
    CAudioVizReader reader(stream);
    if (CError* error = reader.begin(now))
        return error;
    for (CPtr<CAudioVizData> data;;) {
        if (CError* error = reader.next(data))
            return error;
        if (!data)
            return nullptr;
        const auto& meter = dynamic_cast<const CAudioVizDataMeter&>(*data);
        seen.push_back({reader.getSourceName().toUtf8().c_str(), meter.index, meter.group,
                        meter.time, meter.rms, meter.peak});
    }
}

inline CBytes requestVizBytes(CAudioVizCollector& viz, double rate = 30.0)
{
    return written([&](COutputStream& out) { EXPECT_OK(viz.writeStream(out, rate)); });
}

/// Asks as a window does.
inline std::vector<CSeenLevel> requestLevels(CAudioVizCollector& viz, double rate = 30.0)
{
    CPlainInput in(requestVizBytes(viz, rate));
    double now = 0.0;
    std::vector<CSeenLevel> seen;
    EXPECT_OK(readVizStream(in, now, seen));
    return seen;
}

} // namespace tsm
