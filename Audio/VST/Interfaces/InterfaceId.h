#pragma once

#include "Audio/VST/Interfaces/VstTypes.h"

#include <cstring>

namespace Steinberg {

/// An identifier as 16 bytes in the order that Linux has: four words, the most significant byte
/// first. Passes wherever a TUID is a parameter.
struct CInterfaceId {
    char8 bytes[16];

    constexpr CInterfaceId(uint32 l1, uint32 l2, uint32 l3, uint32 l4) : bytes{}
    {
        const uint32 words[4] = {l1, l2, l3, l4};
        for (int i = 0; i < 16; ++i)
            bytes[i] = static_cast<char8>(words[i / 4] >> (24 - 8 * (i % 4)) & 0xff);
    }
    constexpr operator const char8*() const noexcept { return bytes; }
};

/// Whether two identifiers have the same bytes; null equals nothing. [any]
[[nodiscard]] inline bool isSameId(const char8* a, const char8* b) noexcept
{
    return a && b && std::memcmp(a, b, sizeof(TUID)) == 0;
}

inline void copyId(const char8* from, char8* to) noexcept
{
    std::memcpy(to, from, sizeof(TUID));
}

} // namespace Steinberg

/// The head of an interface: its identifier, and a destructor that keeps callers from deleting
/// through it. A virtual one would put two slots into the table of functions.
#define TSM_VST_INTERFACE(name, l1, l2, l3, l4)                                                    \
public:                                                                                            \
    static constexpr ::Steinberg::CInterfaceId iid{l1, l2, l3, l4};                                \
                                                                                                   \
protected:                                                                                         \
    ~name() = default;                                                                             \
                                                                                                   \
public:
