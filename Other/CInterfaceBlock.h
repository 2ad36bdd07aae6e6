#pragma once

#include "Core/CByteBuffer.h"
#include "Core/CMemory.h"
#include "Core/CPtr.h"

#include <cstdint>

namespace tsm {

/// One message of the parameter interface on its way: its bytes, owned by whoever holds the block.
struct CInterfaceBlock : CCheckedObject, CTsmMemAllocator {
    CByteBuffer bytes;
    CInterfaceBlock* next = nullptr;
};

/// Blocks in order, owned. Handing all of them over moves two pointers. No locking; the memory
/// comes from the block allocator, so that the audio thread may add.
class CInterfaceBlockList : public CCheckedObject {
public:
    CInterfaceBlockList() = default;
    CInterfaceBlockList(const CInterfaceBlockList&) = delete;
    CInterfaceBlockList& operator=(const CInterfaceBlockList&) = delete;
    ~CInterfaceBlockList() { clear(); }

    [[nodiscard]] bool isEmpty() const noexcept { return !head; }
    [[nodiscard]] int getCount() const noexcept { return count; }
    /// The bytes of all blocks together.
    [[nodiscard]] std::int64_t getByteCount() const noexcept { return byteCount; }
    void add(CPtr<CInterfaceBlock> block) noexcept;
    /// Takes the first block out; empty when there is none.
    [[nodiscard]] CPtr<CInterfaceBlock> takeFirst() noexcept;
    /// Appends all blocks of `other`, which becomes empty.
    void takeAll(CInterfaceBlockList& other) noexcept;
    void clear() noexcept;

private:
    CInterfaceBlock* head = nullptr;
    CInterfaceBlock* tail = nullptr;
    int count = 0;
    std::int64_t byteCount = 0;
};

} // namespace tsm
