#pragma once

#include "Audio/VST/Interfaces/IComponent.h"
#include "Audio/VST/Interfaces/IEventList.h"
#include "Audio/VST/Interfaces/IParameterChanges.h"
#include "Audio/VST/Interfaces/ProcessContext.h"

namespace Steinberg::Vst {

enum SymbolicSampleSizes : int32 { kSample32 = 0, kSample64 = 1 };
enum ProcessModes : int32 { kRealtime = 0, kPrefetch = 1, kOffline = 2 };

constexpr uint32 kNoTail = 0;
constexpr uint32 kInfiniteTail = 0xffffffff;

struct ProcessSetup {
    int32 processMode;
    int32 symbolicSampleSize;
    int32 maxSamplesPerBlock;
    SampleRate sampleRate;
};

/// The channels of one bus. Inputs must not be written; an output may be the input's buffer.
struct AudioBusBuffers {
    int32 numChannels;
    uint64 silenceFlags; ///< bit n: channel n is all zero
    union {
        Sample32** channelBuffers32;
        Sample64** channelBuffers64;
    };
};

/// One block of work. Each of the pointers may be null; the counts may be 0.
struct ProcessData {
    int32 processMode;
    int32 symbolicSampleSize;
    int32 numSamples;
    int32 numInputs;
    int32 numOutputs;
    AudioBusBuffers* inputs;
    AudioBusBuffers* outputs;
    IParameterChanges* inputParameterChanges;
    IParameterChanges* outputParameterChanges;
    IEventList* inputEvents;
    IEventList* outputEvents;
    ProcessContext* processContext;
};

/// The part of a plug-in that makes sound. [setup] unless told otherwise.
class IAudioProcessor : public FUnknown {
    TSM_VST_INTERFACE(IAudioProcessor, 0x42043F99, 0xB7DA453C, 0xA569E79D, 0x9AAEC33D)

    /// kResultTrue only when all arrangements are taken as given; otherwise the buses may have
    /// changed to what is possible, and the host reads them back.
    virtual tresult setBusArrangements(SpeakerArrangement* inputs, int32 numIns,
                                       SpeakerArrangement* outputs, int32 numOuts) = 0;
    virtual tresult getBusArrangement(BusDirection dir, int32 index, SpeakerArrangement& arr) = 0;
    virtual tresult canProcessSampleSize(int32 symbolicSampleSize) = 0;
    virtual uint32 getLatencySamples() = 0;
    virtual tresult setupProcessing(ProcessSetup& setup) = 0;
    /// [control|audio]
    virtual tresult setProcessing(TBool state) = 0;
    /// [audio]
    virtual tresult process(ProcessData& data) = 0;
    /// kNoTail, kInfiniteTail or a count of samples.
    virtual uint32 getTailSamples() = 0;
};

/// Tells which parts of ProcessContext a plug-in reads. Hosts expect it of plug-ins that state
/// version 3.7 or later; to others they give all that they have.
class IProcessContextRequirements : public FUnknown {
    TSM_VST_INTERFACE(IProcessContextRequirements, 0x2A654303, 0xEF764E3D, 0x95B5FE83, 0x730EF6D0)

    enum Flags : uint32 {
        kNeedSystemTime = 1 << 0,
        kNeedContinousTimeSamples = 1 << 1,
        kNeedProjectTimeMusic = 1 << 2,
        kNeedBarPositionMusic = 1 << 3,
        kNeedCycleMusic = 1 << 4,
        kNeedSamplesToNextClock = 1 << 5,
        kNeedTempo = 1 << 6,
        kNeedTimeSignature = 1 << 7,
        kNeedChord = 1 << 8,
        kNeedFrameRate = 1 << 9,
        kNeedTransportState = 1 << 10,
    };

    virtual uint32 getProcessContextRequirements() = 0;
};

} // namespace Steinberg::Vst
