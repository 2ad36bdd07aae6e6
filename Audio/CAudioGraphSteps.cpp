#include "Audio/CAudioGraphSteps.h"

#include "Audio/CAudioProcessBase.h"

#include <algorithm>

namespace tsm {

void CAudioGraphSteps::add(CAudioProcessBase& process)
{
    steps.add(&process);
    watch(process);
}

bool CAudioGraphSteps::isSteady() const noexcept
{
    const auto isWaiting = [](const CAudioProcessBase* process) { return process->needsUpdate(); };
    return isListed && std::ranges::none_of(watched, isWaiting);
}

void CAudioGraphSteps::run(CAudioProcessBase& root)
{
    if (isSteady()) {
        if (!isTied)
            tieLinks();
        for (CAudioProcessBase* process : steps)
            process->processSteady();
        return;
    }
    // Before the work, which may end links and processes.
    forget();
    root.process();
    root.listSteps(*this);
    isListed = true;
}

void CAudioGraphSteps::tieLinks()
{
    // The last first, so that each leads to the end of its row of ties.
    for (int i = ties.getCount() - 1; i >= 0; --i)
        ties[i].from->leadTo(*ties[i].to);
    isTied = true;
}

void CAudioGraphSteps::forget()
{
    if (isTied)
        for (const CTie& tie : ties)
            tie.from->endHere();
    isListed = isTied = false;
    steps.clear();
    watched.clear();
    ties.clear();
}

} // namespace tsm
