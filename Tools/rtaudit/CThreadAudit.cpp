#include "Tools/rtaudit/CThreadAudit.h"

#include "Tools/Support/HeapWatch.h"
#include "Tools/rtaudit/CRunDelay.h"
#include "Tools/rtaudit/CSystemCallProbe.h"

#include <cassert>
#include <sys/resource.h>

namespace tsm {
namespace {

constinit thread_local CAuditCounts* active = nullptr;

std::int64_t pageFaults()
{
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_minflt + usage.ru_majflt;
}

} // namespace

CThreadAudit::CThreadAudit(CAuditCounts& results) : counts(results), faultsBefore(pageFaults())
{
    assert(!active);
    CRunDelay::prepare();
    active = &counts;
    CSystemCallProbe::begin(counts);
    beginHeapWatch(false);
}

CThreadAudit::~CThreadAudit()
{
    const CHeapCalls calls = endHeapWatch();
    CSystemCallProbe::end();
    active = nullptr;
    counts.allocations += calls.takenCount;
    counts.frees += calls.givenCount;
    counts.pageFaults += pageFaults() - faultsBefore;
}

bool CThreadAudit::isAvailable() noexcept
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return false;
#else
    return true;
#endif
}

bool CThreadAudit::countsSystemCalls() noexcept
{
    return isAvailable() && CSystemCallProbe::isAvailable();
}

CAuditCounts* CThreadAudit::current() noexcept
{
    return active;
}

} // namespace tsm
