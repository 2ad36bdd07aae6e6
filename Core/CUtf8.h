#pragma once

#include <cstdint>
#include <string>

namespace tsm {

/// Walks UTF-8 bytes value by value, forgivingly: a leading byte of no kind is skipped, the bits of
/// continuation bytes are taken unseen. Values above 65535 are told whole; one whose low 16 bits
/// are 0 is dropped, since it would end the text it is cut into.
class CUtf8Reader {
public:
    CUtf8Reader(const char* bytes, std::int64_t count) noexcept;

    /// The next value; false at the end, at a value of 0, and at a sequence that runs past the end.
    bool next(std::uint32_t& value) noexcept;

private:
    const std::uint8_t* at;
    const std::uint8_t* end;
};

/// How many bytes at the beginning are values from 1 to 127, which are encoded as themselves.
[[nodiscard]] std::int64_t plainPrefix(const char* bytes, std::int64_t count) noexcept;

/// Appends the UTF-8 form of a 16-bit unit; surrogates are dropped.
void appendUtf8(std::string& bytes, std::uint16_t code);

} // namespace tsm
