#include "Platform/CThreadId.h"

#include <unistd.h>

namespace tsm {

std::uint32_t currentThreadId() noexcept
{
    // The call into the kernel is made once a thread; events ask for the number all the time.
    thread_local const auto id = static_cast<std::uint32_t>(gettid());
    return id;
}

} // namespace tsm
