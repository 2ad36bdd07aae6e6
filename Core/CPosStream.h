#pragma once

#include "Core/CError.h"

#include <cstdint>

namespace tsm {

/// A stream with a position and a size, both in bytes.
class CPosStream : public CCheckedObject {
public:
    CPosStream() = default;
    virtual ~CPosStream() = default;
    CPosStream(const CPosStream&) = delete;
    CPosStream& operator=(const CPosStream&) = delete;

    [[nodiscard]] virtual CError* getPosition(std::uint64_t& position) = 0;
    [[nodiscard]] virtual CError* getSize(std::uint64_t& size) = 0;
    [[nodiscard]] virtual CError* setPosition(std::uint64_t position) = 0;

    /// As getPosition() and getSize(), for users that work with 32 bits. Errors: above 2 GB.
    [[nodiscard]] CError* getPositionInt32(std::int32_t& position);
    [[nodiscard]] CError* getSizeInt(std::int32_t& size);
};

} // namespace tsm
