#pragma once

#include <cstdint>

/// The types of the VST 3 interface. All of this folder mirrors the binary interface of VST 3 on
/// x86-64 Linux, version 3.7: names, order of virtual functions, layout of structures and values
/// are those that hosts were compiled with. Offsets and sizes are asserted in LayoutChecks.cpp.
namespace Steinberg {

using int8 = char;
using uint8 = std::uint8_t;
using int16 = std::int16_t;
using uint16 = std::uint16_t;
using int32 = std::int32_t;
using uint32 = std::uint32_t;
using int64 = std::int64_t;
using uint64 = std::uint64_t;
using char8 = char;
using char16 = char16_t;
using tchar = char16;
using TBool = uint8; ///< 0 or not 0
using TSize = int64;
using FIDString = const char8*; ///< ends with 0
using UCoord = int32;

/// What most functions of the interface return. Beware: true is 0.
using tresult = int32;

enum : tresult {
    kNoInterface = -1,
    kResultOk = 0,
    kResultTrue = kResultOk,
    kResultFalse = 1,
    kInvalidArgument = 2,
    kNotImplemented = 3,
    kInternalError = 4,
    kNotInitialized = 5,
    kOutOfMemory = 6,
};

/// The 16 bytes that name an interface or a class. As a parameter: a pointer to them.
using TUID = char8[16];

namespace Vst {

using TChar = char16;
/// Text that ends with 0 within 128 units. As a parameter: a pointer to room for 128 units.
using String128 = TChar[128];
constexpr int32 kString128Size = 128;

using MediaType = int32;
using BusDirection = int32;
using BusType = int32;
using IoMode = int32;
using UnitID = int32;
using ProgramListID = int32;
using KnobMode = int32;
using ParamID = uint32;
using ParamValue = double; ///< as a rule normalized, 0 to 1
using SampleRate = double;
using TQuarterNotes = double;
using Sample32 = float;
using Sample64 = double;
using TSamples = int64;
using SpeakerArrangement = uint64; ///< one bit a speaker; channels in order of rising bits
using Speaker = uint64;
using AttrID = const char8*;

constexpr ParamID kNoParamId = 0xffffffff;
constexpr ParamID kMinParamId = 0;
constexpr ParamID kMaxParamId = 0x7fffffff;

} // namespace Vst
} // namespace Steinberg
