#include "Platform/CProcessId.h"

#include <unistd.h>

namespace tsm {

std::uint32_t currentProcessId() noexcept
{
    return static_cast<std::uint32_t>(getpid());
}

} // namespace tsm
