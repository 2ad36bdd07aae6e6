#pragma once

#include "Core/CMemory.h"

#include <cstddef>
#include <cstdint>

namespace tsm::rsk {

/// Base of classes whose objects start at a multiple of 64 bytes. Empty.
class CStdClassAllocator {
public:
    static void* operator new(std::size_t size)
    {
        void* block = allocBlock(size + kAlignment);
        const auto address = reinterpret_cast<std::uintptr_t>(block) + kAlignment;
        void** object = reinterpret_cast<void**>(address / kAlignment * kAlignment);
        object[-1] = block; // blocks are aligned to 16 bytes, so there is room for it in front
        return object;
    }
    static void operator delete(void* object) noexcept
    {
        if (object)
            freeBlock(static_cast<void**>(object)[-1]);
    }

private:
    static constexpr std::size_t kAlignment = 64;
};

} // namespace tsm::rsk
