#include "Tools/rtaudit/CRunDelay.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace tsm {
namespace {

/// A file that its thread closes as it ends.
struct CThreadFile {
    ~CThreadFile()
    {
        if (handle >= 0)
            close(handle);
    }
    int handle = -1;
};
thread_local CThreadFile file;

} // namespace

void CRunDelay::prepare() noexcept
{
    if (file.handle < 0)
        file.handle = open("/proc/thread-self/schedstat", O_RDONLY | O_CLOEXEC);
}

std::int64_t CRunDelay::getNs() noexcept
{
    char text[64] = {};
    long long running = 0;
    long long waiting = 0;
    if (file.handle < 0 || pread(file.handle, text, sizeof text - 1, 0) <= 0 ||
        std::sscanf(text, "%lld %lld", &running, &waiting) != 2)
        return 0;
    return waiting;
}

} // namespace tsm
