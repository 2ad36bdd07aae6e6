#include "Audio/Processes/CNoiseSeed.h"

#include "Platform/CCriticalSection.h"

namespace tsm {

namespace {

constinit CCriticalSection lock{50};
constinit std::uint32_t counter = 0;

} // namespace

std::uint32_t CNoiseSeed::draw()
{
    const CLockScope scope(lock);
    counter = (counter + 1) & 0x7fffffff;
    return counter;
}

} // namespace tsm
