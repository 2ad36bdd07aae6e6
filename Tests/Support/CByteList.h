#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tsm {

/// Little-endian bytes, written by hand.
class CByteList {
public:
    CByteList& u32(std::uint32_t value)
    {
        for (int i = 0; i < 4; ++i)
            bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        return *this;
    }
    CByteList& f64(std::uint64_t pattern)
    {
        u32(static_cast<std::uint32_t>(pattern));
        return u32(static_cast<std::uint32_t>(pattern >> 32));
    }
    CByteList& text(const std::string& value)
    {
        u32(static_cast<std::uint32_t>(value.size()));
        bytes.insert(bytes.end(), value.begin(), value.end());
        return *this;
    }
    CByteList& append(const std::vector<std::uint8_t>& more)
    {
        bytes.insert(bytes.end(), more.begin(), more.end());
        return *this;
    }
    std::vector<std::uint8_t> bytes;
};

} // namespace tsm
