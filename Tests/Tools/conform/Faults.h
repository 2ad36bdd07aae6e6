#pragma once

#include <array>
#include <cstddef>

namespace tsm {

/// What the faulty plug-in does wrong, by its name in the environment variable `kFaultVariable` at
/// the module's start; several with a blank between.
enum class EFault {
    ReferenceKept,
    TwoIdentities,
    ClassNameWithoutEnd,
    ExitRefused,
    Talkative,
    HandlerKept,
    InitializedTwice,
    BusOfOtherSize,
    HangInArrangements,
    TitleWithoutEnd,
    UnknownIdTaken,
    PlainOfOtherRange,
    TextReadWrong,
    TextBeyondOne,
    StepsOfOneText,
    ProgramBeyondCount,
    StateLost,
    StateWrittenInPart,
    CrashOnDamage,
    AllocationInProcess,
    ClearsOutputFirst,
    WritesBeyondDoubles,
    SilenceClaimed,
    NanOnLoudInput,
    NanStays,
    ModesChanged,
    LateAutomation,
    LatencyOther,
    MemoryLeak,
    DescriptorLeak,
    CrashInOverlap,
    CrashOffMainThread,
    VendorMissing,
    PointerLeftBehind,
    NeedsContext,
    BusFixed,
    MonoBroken,
    NeedsTerminate,
    NeedsSetProcessing,
    FewInstances,
    NeedsGoodRate,
    ProgramOfOtherName,
    SizeHeard,
    NeedsChannels,
    NeedsTempo,
    NeedsBusOfEvent,
    OfflineBroken,
    FlushLost,
    TailUntold,
    OneAtATime,
    Count,
};

constexpr const char* kFaultVariable = "TSM_TEST_FAULT";

struct CFaultRow {
    EFault fault;
    const char* name;
    /// The cases that must fail, and no other; with a blank between.
    const char* cases;
};

constexpr std::array kFaults{
    CFaultRow{EFault::ReferenceKept, "ReferenceKept",
              "module.reload objects.identity objects.last-release resources.cycles"},
    CFaultRow{EFault::TwoIdentities, "TwoIdentities", "objects.identity"},
    CFaultRow{EFault::ClassNameWithoutEnd, "ClassNameWithoutEnd", "factory.classes"},
    CFaultRow{EFault::ExitRefused, "ExitRefused", "module.entry"},
    CFaultRow{EFault::Talkative, "Talkative", "module.silence"},
    CFaultRow{EFault::HandlerKept, "HandlerKept",
              "module.reload objects.host-objects resources.cycles"},
    CFaultRow{EFault::InitializedTwice, "InitializedTwice", "life.initialize"},
    CFaultRow{EFault::BusOfOtherSize, "BusOfOtherSize", "buses.info buses.arrangements"},
    CFaultRow{EFault::HangInArrangements, "HangInArrangements", "buses.arrangements"},
    CFaultRow{EFault::TitleWithoutEnd, "TitleWithoutEnd", "parameters.info"},
    CFaultRow{EFault::UnknownIdTaken, "UnknownIdTaken", "parameters.values"},
    CFaultRow{EFault::PlainOfOtherRange, "PlainOfOtherRange", "parameters.plain"},
    CFaultRow{EFault::TextReadWrong, "TextReadWrong", "parameters.texts"},
    CFaultRow{EFault::TextBeyondOne, "TextBeyondOne", "parameters.odd-texts"},
    CFaultRow{EFault::StepsOfOneText, "StepsOfOneText", "parameters.steps"},
    CFaultRow{EFault::ProgramBeyondCount, "ProgramBeyondCount", "units.info"},
    CFaultRow{EFault::StateLost, "StateLost",
              "state.round-trip state.moments state.streams state.damaged"},
    CFaultRow{EFault::StateWrittenInPart, "StateWrittenInPart", "state.streams"},
    CFaultRow{EFault::CrashOnDamage, "CrashOnDamage", "state.damaged"},
    CFaultRow{EFault::AllocationInProcess, "AllocationInProcess", "resources.allocation"},
    CFaultRow{EFault::ClearsOutputFirst, "ClearsOutputFirst", "process.in-place"},
    CFaultRow{EFault::WritesBeyondDoubles, "WritesBeyondDoubles",
              "process.blocks-64 process.sample-sizes"},
    CFaultRow{EFault::SilenceClaimed, "SilenceClaimed", "process.silence"},
    CFaultRow{EFault::NanOnLoudInput, "NanOnLoudInput", "input.bounds"},
    CFaultRow{EFault::NanStays, "NanStays", "input.not-finite"},
    CFaultRow{EFault::ModesChanged, "ModesChanged", "input.denormals"},
    CFaultRow{EFault::LateAutomation, "LateAutomation", "automation.accuracy"},
    CFaultRow{EFault::LatencyOther, "LatencyOther", "timing.latency timing.bypass"},
    CFaultRow{EFault::MemoryLeak, "MemoryLeak", "module.reload resources.cycles"},
    CFaultRow{EFault::DescriptorLeak, "DescriptorLeak", "module.reload resources.cycles"},
    CFaultRow{EFault::CrashInOverlap, "CrashInOverlap", "threads.control"},
    CFaultRow{EFault::CrashOffMainThread, "CrashOffMainThread", "threads.processing"},
    CFaultRow{EFault::VendorMissing, "VendorMissing", "factory.info factory.description"},
    CFaultRow{EFault::PointerLeftBehind, "PointerLeftBehind", "factory.creation"},
    CFaultRow{EFault::NeedsContext, "NeedsContext", "objects.null"},
    CFaultRow{EFault::BusFixed, "BusFixed", "buses.activation"},
    CFaultRow{EFault::MonoBroken, "MonoBroken", "buses.sound"},
    CFaultRow{EFault::NeedsTerminate, "NeedsTerminate", "life.release"},
    CFaultRow{EFault::NeedsSetProcessing, "NeedsSetProcessing", "life.orders"},
    CFaultRow{EFault::FewInstances, "FewInstances", "life.many"},
    CFaultRow{EFault::NeedsGoodRate, "NeedsGoodRate", "life.bad-set-ups"},
    CFaultRow{EFault::ProgramOfOtherName, "ProgramOfOtherName", "units.programs"},
    CFaultRow{EFault::SizeHeard, "SizeHeard", "process.blocks-32"},
    CFaultRow{EFault::NeedsChannels, "NeedsChannels", "process.buses"},
    CFaultRow{EFault::NeedsTempo, "NeedsTempo", "process.context"},
    CFaultRow{EFault::NeedsBusOfEvent, "NeedsBusOfEvent", "process.events"},
    CFaultRow{EFault::OfflineBroken, "OfflineBroken", "process.offline"},
    CFaultRow{EFault::FlushLost, "FlushLost", "automation.flush"},
    CFaultRow{EFault::TailUntold, "TailUntold", "timing.tail"},
    CFaultRow{EFault::OneAtATime, "OneAtATime", "threads.instances"}};
static_assert(kFaults.size() == static_cast<std::size_t>(EFault::Count));

} // namespace tsm
