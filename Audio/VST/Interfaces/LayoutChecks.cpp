#include "Audio/VST/Interfaces/IAudioProcessor.h"
#include "Audio/VST/Interfaces/IEditController.h"
#include "Audio/VST/Interfaces/IPluginFactory.h"
#include "Audio/VST/Interfaces/IUnitInfo.h"

#include <cstddef>

// Offsets and sizes that hosts were compiled with. A failure here is a break of the interface.
namespace Steinberg::Vst {

template <class Structure, std::size_t size, std::size_t alignment>
constexpr bool hasSize = sizeof(Structure) == size && alignof(Structure) == alignment;

#define TSM_AT(structure, field, offset)                                                           \
    static_assert(offsetof(structure, field) == (offset), #structure "::" #field)

static_assert(sizeof(void*) == 8 && sizeof(TBool) == 1 && sizeof(tresult) == 4 &&
              sizeof(TUID) == 16 && sizeof(String128) == 256 && sizeof(CInterfaceId) == 16);

static_assert(hasSize<PFactoryInfo, 452, 4>);
TSM_AT(PFactoryInfo, vendor, 0);
TSM_AT(PFactoryInfo, url, 64);
TSM_AT(PFactoryInfo, email, 320);
TSM_AT(PFactoryInfo, flags, 448);

static_assert(hasSize<PClassInfo, 116, 4>);
TSM_AT(PClassInfo, cid, 0);
TSM_AT(PClassInfo, cardinality, 16);
TSM_AT(PClassInfo, category, 20);
TSM_AT(PClassInfo, name, 52);

static_assert(hasSize<PClassInfo2, 440, 4>);
TSM_AT(PClassInfo2, cid, 0);
TSM_AT(PClassInfo2, cardinality, 16);
TSM_AT(PClassInfo2, category, 20);
TSM_AT(PClassInfo2, name, 52);
TSM_AT(PClassInfo2, classFlags, 116);
TSM_AT(PClassInfo2, subCategories, 120);
TSM_AT(PClassInfo2, vendor, 248);
TSM_AT(PClassInfo2, version, 312);
TSM_AT(PClassInfo2, sdkVersion, 376);

static_assert(hasSize<PClassInfoW, 696, 4>);
TSM_AT(PClassInfoW, cid, 0);
TSM_AT(PClassInfoW, cardinality, 16);
TSM_AT(PClassInfoW, category, 20);
TSM_AT(PClassInfoW, name, 52);
TSM_AT(PClassInfoW, classFlags, 180);
TSM_AT(PClassInfoW, subCategories, 184);
TSM_AT(PClassInfoW, vendor, 312);
TSM_AT(PClassInfoW, version, 440);
TSM_AT(PClassInfoW, sdkVersion, 568);

static_assert(hasSize<BusInfo, 276, 4>);
TSM_AT(BusInfo, mediaType, 0);
TSM_AT(BusInfo, direction, 4);
TSM_AT(BusInfo, channelCount, 8);
TSM_AT(BusInfo, name, 12);
TSM_AT(BusInfo, busType, 268);
TSM_AT(BusInfo, flags, 272);

static_assert(hasSize<RoutingInfo, 12, 4>);
TSM_AT(RoutingInfo, mediaType, 0);
TSM_AT(RoutingInfo, busIndex, 4);
TSM_AT(RoutingInfo, channel, 8);

static_assert(hasSize<ProcessSetup, 24, 8>);
TSM_AT(ProcessSetup, processMode, 0);
TSM_AT(ProcessSetup, symbolicSampleSize, 4);
TSM_AT(ProcessSetup, maxSamplesPerBlock, 8);
TSM_AT(ProcessSetup, sampleRate, 16);

static_assert(hasSize<AudioBusBuffers, 24, 8>);
TSM_AT(AudioBusBuffers, numChannels, 0);
TSM_AT(AudioBusBuffers, silenceFlags, 8);
TSM_AT(AudioBusBuffers, channelBuffers32, 16);
TSM_AT(AudioBusBuffers, channelBuffers64, 16);

static_assert(hasSize<ProcessData, 80, 8>);
TSM_AT(ProcessData, processMode, 0);
TSM_AT(ProcessData, symbolicSampleSize, 4);
TSM_AT(ProcessData, numSamples, 8);
TSM_AT(ProcessData, numInputs, 12);
TSM_AT(ProcessData, numOutputs, 16);
TSM_AT(ProcessData, inputs, 24);
TSM_AT(ProcessData, outputs, 32);
TSM_AT(ProcessData, inputParameterChanges, 40);
TSM_AT(ProcessData, outputParameterChanges, 48);
TSM_AT(ProcessData, inputEvents, 56);
TSM_AT(ProcessData, outputEvents, 64);
TSM_AT(ProcessData, processContext, 72);

static_assert(hasSize<Chord, 4, 2> && hasSize<FrameRate, 8, 4>);
TSM_AT(Chord, rootNote, 1);
TSM_AT(Chord, chordMask, 2);
TSM_AT(FrameRate, framesPerSecond, 0);
TSM_AT(FrameRate, flags, 4);

static_assert(hasSize<ProcessContext, 112, 8>);
TSM_AT(ProcessContext, state, 0);
TSM_AT(ProcessContext, sampleRate, 8);
TSM_AT(ProcessContext, projectTimeSamples, 16);
TSM_AT(ProcessContext, systemTime, 24);
TSM_AT(ProcessContext, continousTimeSamples, 32);
TSM_AT(ProcessContext, projectTimeMusic, 40);
TSM_AT(ProcessContext, barPositionMusic, 48);
TSM_AT(ProcessContext, cycleStartMusic, 56);
TSM_AT(ProcessContext, cycleEndMusic, 64);
TSM_AT(ProcessContext, tempo, 72);
TSM_AT(ProcessContext, timeSigNumerator, 80);
TSM_AT(ProcessContext, timeSigDenominator, 84);
TSM_AT(ProcessContext, chord, 88);
TSM_AT(ProcessContext, smpteOffsetSubframes, 92);
TSM_AT(ProcessContext, frameRate, 96);
TSM_AT(ProcessContext, samplesToNextClock, 104);

static_assert(hasSize<ParameterInfo, 792, 8>);
TSM_AT(ParameterInfo, id, 0);
TSM_AT(ParameterInfo, title, 4);
TSM_AT(ParameterInfo, shortTitle, 260);
TSM_AT(ParameterInfo, units, 516);
TSM_AT(ParameterInfo, stepCount, 772);
TSM_AT(ParameterInfo, defaultNormalizedValue, 776);
TSM_AT(ParameterInfo, unitId, 784);
TSM_AT(ParameterInfo, flags, 788);

static_assert(hasSize<UnitInfo, 268, 4>);
TSM_AT(UnitInfo, id, 0);
TSM_AT(UnitInfo, parentUnitId, 4);
TSM_AT(UnitInfo, name, 8);
TSM_AT(UnitInfo, programListId, 264);

static_assert(hasSize<ProgramListInfo, 264, 4>);
TSM_AT(ProgramListInfo, id, 0);
TSM_AT(ProgramListInfo, name, 4);
TSM_AT(ProgramListInfo, programCount, 260);

static_assert(hasSize<ViewRect, 16, 4>);
TSM_AT(ViewRect, left, 0);
TSM_AT(ViewRect, top, 4);
TSM_AT(ViewRect, right, 8);
TSM_AT(ViewRect, bottom, 12);

static_assert(hasSize<Event, 48, 8>);
TSM_AT(Event, busIndex, 0);
TSM_AT(Event, sampleOffset, 4);
TSM_AT(Event, ppqPosition, 8);
TSM_AT(Event, flags, 16);
TSM_AT(Event, type, 18);
TSM_AT(Event, noteOn, 24);
TSM_AT(Event, midiCCOut, 24);

static_assert(hasSize<NoteOnEvent, 20, 4>);
TSM_AT(NoteOnEvent, channel, 0);
TSM_AT(NoteOnEvent, pitch, 2);
TSM_AT(NoteOnEvent, tuning, 4);
TSM_AT(NoteOnEvent, velocity, 8);
TSM_AT(NoteOnEvent, length, 12);
TSM_AT(NoteOnEvent, noteId, 16);

static_assert(hasSize<NoteOffEvent, 16, 4>);
TSM_AT(NoteOffEvent, channel, 0);
TSM_AT(NoteOffEvent, pitch, 2);
TSM_AT(NoteOffEvent, velocity, 4);
TSM_AT(NoteOffEvent, noteId, 8);
TSM_AT(NoteOffEvent, tuning, 12);

static_assert(hasSize<DataEvent, 16, 8>);
TSM_AT(DataEvent, size, 0);
TSM_AT(DataEvent, type, 4);
TSM_AT(DataEvent, bytes, 8);

static_assert(hasSize<PolyPressureEvent, 12, 4>);
TSM_AT(PolyPressureEvent, channel, 0);
TSM_AT(PolyPressureEvent, pitch, 2);
TSM_AT(PolyPressureEvent, pressure, 4);
TSM_AT(PolyPressureEvent, noteId, 8);

static_assert(hasSize<NoteExpressionValueEvent, 16, 8>);
TSM_AT(NoteExpressionValueEvent, typeId, 0);
TSM_AT(NoteExpressionValueEvent, noteId, 4);
TSM_AT(NoteExpressionValueEvent, value, 8);

static_assert(hasSize<NoteExpressionTextEvent, 24, 8>);
TSM_AT(NoteExpressionTextEvent, typeId, 0);
TSM_AT(NoteExpressionTextEvent, noteId, 4);
TSM_AT(NoteExpressionTextEvent, textLen, 8);
TSM_AT(NoteExpressionTextEvent, text, 16);

static_assert(hasSize<ChordEvent, 16, 8>);
TSM_AT(ChordEvent, root, 0);
TSM_AT(ChordEvent, bassNote, 2);
TSM_AT(ChordEvent, mask, 4);
TSM_AT(ChordEvent, textLen, 6);
TSM_AT(ChordEvent, text, 8);

static_assert(hasSize<ScaleEvent, 16, 8>);
TSM_AT(ScaleEvent, root, 0);
TSM_AT(ScaleEvent, mask, 2);
TSM_AT(ScaleEvent, textLen, 4);
TSM_AT(ScaleEvent, text, 8);

static_assert(hasSize<LegacyMIDICCOutEvent, 4, 1>);
TSM_AT(LegacyMIDICCOutEvent, controlNumber, 0);
TSM_AT(LegacyMIDICCOutEvent, channel, 1);
TSM_AT(LegacyMIDICCOutEvent, value, 2);
TSM_AT(LegacyMIDICCOutEvent, value2, 3);

#undef TSM_AT

} // namespace Steinberg::Vst
