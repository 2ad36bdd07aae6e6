#pragma once

#include "Core/CMemoryReader.h"

namespace tsm {

/// Input from memory that stays for the life of the module, so that its users may keep pointers
/// into it.
class CMemoryReaderStatic : public CMemoryReader {
public:
    using CMemoryReader::CMemoryReader;

    [[nodiscard]] const void* getMemoryPtr() const noexcept override { return unreadData(); }
};

} // namespace tsm
