#include "Tests/Fuzz/FuzzTarget.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tsm {

void promise(bool holds, const char* words)
{
    if (holds)
        return;
    std::fprintf(stderr, "fuzz: a promise is broken: %s\n", words);
    std::abort();
}

bool hasFailed(CError* error)
{
    const CPtr<CError> owned(error);
    return error != nullptr;
}

CError* CGuardedInput::read(void* buffer, int count)
{
    constexpr std::size_t kFreeBytes = 65536;
    promise(count >= 0, "no negative count is asked for");
    const auto wanted = static_cast<std::size_t>(count);
    promise(wanted <= std::max(kFreeBytes, position), "what is asked for grows with what came");
    if (wanted > size - position)
        TSM_FAIL("The input has ended.");
    if (wanted > 0)
        std::memcpy(buffer, data + position, wanted);
    position += wanted;
    return nullptr;
}

CError* CGuardedInput::readStreamed(void* buffer, int& count)
{
    const std::size_t left = std::min(size - position, static_cast<std::size_t>(pieceSize));
    count = static_cast<int>(std::min(static_cast<std::size_t>(count), left));
    return read(buffer, count);
}

} // namespace tsm
