#pragma once

#include "Core/CObject.h"

#include "Platform/CCriticalSection.h"

#include <atomic>
#include <cstdint>

namespace tsm {

/// What the wrapper and all processes of one instance share.
///
/// `lock` guards the fields, and the handover of parameter changes to the audio thread. It is held
/// for a few instructions at a time; the audio thread takes it once a sub-block. The audio thread,
/// which alone moves the times and the latency, reads them without it.
class CAudioEnv : public CObject {
public:
    static void declareClass(CObjectClassInfo& info);

    CCriticalSection lock{50};
    bool isProcessing = false;
    double sampleRate = 44100.0;           // of the host, in Hz
    std::atomic<std::int32_t> latency = 0; // of the whole graph, in samples; any thread asks
    double streamTime = 0.0;               // of the sub-block's beginning, seconds; [audio]
    double blockEndTime = 0.0;             // seconds
    double vizRate = 30.0;                 // frames a second that the window asks for
};

} // namespace tsm
