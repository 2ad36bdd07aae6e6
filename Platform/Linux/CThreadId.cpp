#include "Platform/CThreadId.h"

#include <pthread.h>
#include <unistd.h>

namespace tsm {
namespace {

// The call into the kernel is made once a thread; events and locks ask for the number all the time.
constinit thread_local std::uint32_t id = 0;

// The one thread of a forked process is another one than that which it copies.
[[maybe_unused]] const int forkCode = pthread_atfork(nullptr, nullptr, [] { id = 0; });

} // namespace

std::uint32_t currentThreadId() noexcept
{
    if (id == 0)
        id = static_cast<std::uint32_t>(gettid());
    return id;
}

} // namespace tsm
