#include "rsk/CDSPConvolverPhase.h"

#include "Platform/CCriticalSection.h"

#include <algorithm>
#include <iterator>

namespace tsm::rsk {

namespace {

struct CPhaseTable {
    CCriticalSection lock{1000};
    int useCounts[CDSPConvolverPhase::kCount] = {};
};

CPhaseTable& phaseTable()
{
    static CPhaseTable table;
    return table;
}

} // namespace

CDSPConvolverPhase::CDSPConvolverPhase()
{
    CPhaseTable& table = phaseTable();
    const CLockScope scope(table.lock);
    int* least = std::min_element(std::begin(table.useCounts), std::end(table.useCounts));
    ++*least;
    phase = static_cast<int>(least - table.useCounts);
}

CDSPConvolverPhase::~CDSPConvolverPhase()
{
    CPhaseTable& table = phaseTable();
    const CLockScope scope(table.lock);
    --table.useCounts[phase];
}

} // namespace tsm::rsk
