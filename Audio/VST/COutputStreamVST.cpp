#include "Audio/VST/COutputStreamVST.h"

#include "Core/CError.h"

using namespace Steinberg;
using tsm::errorContext;

tsm::CError* COutputStreamVST::write(const void* buffer, int count)
{
    // The interface asks for a pointer that it could write through, and doesn't.
    if (stream.write(const_cast<void*>(buffer), count, nullptr) != kResultOk)
        TSM_FAIL("The host takes no more data.");
    return nullptr;
}
