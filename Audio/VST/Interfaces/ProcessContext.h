#pragma once

#include "Audio/VST/Interfaces/VstTypes.h"

namespace Steinberg::Vst {

struct FrameRate {
    enum FrameRateFlags : uint32 { kPullDownRate = 1 << 0, kDropRate = 1 << 1 };

    uint32 framesPerSecond;
    uint32 flags;
};

struct Chord {
    uint8 keyNote;
    uint8 rootNote;
    int16 chordMask;
};

/// Where the host's transport is at a block's first sample.
struct ProcessContext {
    enum StatesAndFlags : uint32 {
        kPlaying = 1 << 1,
        kCycleActive = 1 << 2,
        kRecording = 1 << 3,
        kSystemTimeValid = 1 << 8,
        kProjectTimeMusicValid = 1 << 9,
        kTempoValid = 1 << 10,
        kBarPositionValid = 1 << 11,
        kCycleValid = 1 << 12,
        kTimeSigValid = 1 << 13,
        kSmpteValid = 1 << 14,
        kClockValid = 1 << 15,
        kContTimeValid = 1 << 17,
        kChordValid = 1 << 18,
    };

    uint32 state;
    double sampleRate;             ///< always valid
    TSamples projectTimeSamples;   ///< always valid
    int64 systemTime;              ///< nanoseconds
    TSamples continousTimeSamples; ///< spelt as hosts' debuggers show it
    TQuarterNotes projectTimeMusic;
    TQuarterNotes barPositionMusic;
    TQuarterNotes cycleStartMusic;
    TQuarterNotes cycleEndMusic;
    double tempo; ///< beats a minute, with kTempoValid
    int32 timeSigNumerator;
    int32 timeSigDenominator;
    Chord chord;
    int32 smpteOffsetSubframes; ///< 1/80 frame
    FrameRate frameRate;
    int32 samplesToNextClock;
};

} // namespace Steinberg::Vst
