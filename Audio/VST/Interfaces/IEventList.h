#pragma once

#include "Audio/VST/Interfaces/FUnknown.h"

namespace Steinberg::Vst {

struct NoteOnEvent {
    int16 channel;
    int16 pitch;
    float tuning;   ///< cents
    float velocity; ///< 0 to 1
    int32 length;   ///< samples
    int32 noteId;
};

struct NoteOffEvent {
    int16 channel;
    int16 pitch;
    float velocity;
    int32 noteId;
    float tuning;
};

struct DataEvent {
    uint32 size;
    uint32 type; ///< 0: MIDI system exclusive
    const uint8* bytes;
};

struct PolyPressureEvent {
    int16 channel;
    int16 pitch;
    float pressure;
    int32 noteId;
};

struct NoteExpressionValueEvent {
    uint32 typeId;
    int32 noteId;
    double value;
};

struct NoteExpressionTextEvent {
    uint32 typeId;
    int32 noteId;
    uint32 textLen;
    const TChar* text;
};

struct ChordEvent {
    int16 root;
    int16 bassNote;
    int16 mask;
    uint16 textLen;
    const TChar* text;
};

struct ScaleEvent {
    int16 root;
    int16 mask;
    uint16 textLen;
    const TChar* text;
};

struct LegacyMIDICCOutEvent {
    uint8 controlNumber;
    int8 channel;
    int8 value;
    int8 value2;
};

/// Something that happens at a sample of a block.
struct Event {
    enum EventFlags : uint16 {
        kIsLive = 1 << 0,
        kUserReserved1 = 1 << 14,
        kUserReserved2 = 1 << 15
    };
    enum EventTypes : uint16 {
        kNoteOnEvent = 0,
        kNoteOffEvent = 1,
        kDataEvent = 2,
        kPolyPressureEvent = 3,
        kNoteExpressionValueEvent = 4,
        kNoteExpressionTextEvent = 5,
        kChordEvent = 6,
        kScaleEvent = 7,
        kLegacyMIDICCOutEvent = 65535,
    };

    int32 busIndex;
    int32 sampleOffset;
    TQuarterNotes ppqPosition;
    uint16 flags;
    uint16 type;
    union {
        NoteOnEvent noteOn;
        NoteOffEvent noteOff;
        DataEvent data;
        PolyPressureEvent polyPressure;
        NoteExpressionValueEvent noteExpressionValue;
        NoteExpressionTextEvent noteExpressionText;
        ChordEvent chord;
        ScaleEvent scale;
        LegacyMIDICCOutEvent midiCCOut;
    };
};

/// The events of a block. [audio]
class IEventList : public FUnknown {
    TSM_VST_INTERFACE(IEventList, 0x3A2C4214, 0x346349FE, 0xB2C4F397, 0xB9695A44)

    virtual int32 getEventCount() = 0;
    virtual tresult getEvent(int32 index, Event& e) = 0;
    virtual tresult addEvent(Event& e) = 0;
};

} // namespace Steinberg::Vst
