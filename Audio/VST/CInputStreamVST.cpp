#include "Audio/VST/CInputStreamVST.h"

#include "Core/CError.h"

#include <algorithm>

using namespace Steinberg;
using tsm::errorContext;

tsm::CError* CInputStreamVST::read(void* buffer, int count)
{
    int done = count;
    TSM_TRY(readStreamed(buffer, done));
    if (done < count)
        TSM_FAIL("The host's data end too early.");
    return nullptr;
}

tsm::CError* CInputStreamVST::readStreamed(void* buffer, int& count)
{
    int done = 0;
    while (done < count) {
        int32 came = 0;
        auto* const to = static_cast<char*>(buffer) + done;
        if (stream.read(to, count - done, &came) != kResultOk || came <= 0)
            break;
        done += std::min(came, count - done); // whatever the host claims
    }
    count = done;
    return nullptr;
}
