#include "Audio/VST/COutputStreamVST.h"

#include "Core/CError.h"

#include <algorithm>

using namespace Steinberg;
using tsm::errorContext;

tsm::CError* COutputStreamVST::write(const void* buffer, int count)
{
    // The interface asks for a pointer that it could write through, and doesn't.
    char* const from = static_cast<char*>(const_cast<void*>(buffer));
    int done = 0;
    while (done < count) {
        int32 taken = count - done; // of hosts that don't tell
        if (stream.write(from + done, count - done, &taken) != kResultOk || taken <= 0)
            TSM_FAIL("The host takes no more data.");
        done += std::min(taken, count - done); // whatever the host claims
    }
    return nullptr;
}
