#pragma once

#include "Core/CInputStream.h"
#include "Core/COutputStream.h"

#include <cstdint>

namespace tsm {

/// The fields of the parameter interface's messages: numbers of 32 bits, flags as such numbers,
/// doubles, and strings; little-endian, one behind the other.

template <class T>
[[nodiscard]] CError* readField(CInputStream& stream, T& number)
{
    static_assert(sizeof(T) == 4 || sizeof(T) == 8);
    TSM_TRY(stream.readValue(number));
    return nullptr;
}

[[nodiscard]] inline CError* readField(CInputStream& stream, bool& flag)
{
    std::uint32_t number = 0;
    TSM_TRY(stream.readValue(number));
    flag = number != 0;
    return nullptr;
}

[[nodiscard]] inline CError* readField(CInputStream& stream, CString& text)
{
    TSM_TRY(stream.readString(text));
    return nullptr;
}

/// Reads several fields, in order. Errors: cut data, a string that is too long.
template <class... T>
[[nodiscard]] CError* readFields(CInputStream& stream, T&... fields)
{
    CError* error = nullptr;
    [[maybe_unused]] const bool hasFailed =
        ((error = readField(stream, fields), error != nullptr) || ...);
    TSM_TRY(error);
    return nullptr;
}

template <class T>
[[nodiscard]] CError* writeField(COutputStream& stream, T number)
{
    static_assert(sizeof(T) == 4 || sizeof(T) == 8);
    TSM_TRY(stream.writeValue(number));
    return nullptr;
}

[[nodiscard]] inline CError* writeField(COutputStream& stream, bool flag)
{
    TSM_TRY(stream.writeValue<std::uint32_t>(flag ? 1 : 0));
    return nullptr;
}

[[nodiscard]] inline CError* writeField(COutputStream& stream, const CString& text)
{
    TSM_TRY(stream.writeString(text));
    return nullptr;
}

[[nodiscard]] inline CError* writeField(COutputStream& stream, const char* text)
{
    TSM_TRY(stream.writeString(text));
    return nullptr;
}

/// Writes several fields, in order. Errors: the stream's.
template <class... T>
[[nodiscard]] CError* writeFields(COutputStream& stream, const T&... fields)
{
    CError* error = nullptr;
    [[maybe_unused]] const bool hasFailed =
        ((error = writeField(stream, fields), error != nullptr) || ...);
    TSM_TRY(error);
    return nullptr;
}

} // namespace tsm
