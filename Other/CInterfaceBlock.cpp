#include "Other/CInterfaceBlock.h"

#include <utility>

namespace tsm {

void CInterfaceBlockList::add(CPtr<CInterfaceBlock> block) noexcept
{
    ++count;
    byteCount += block->bytes.getSize();
    CInterfaceBlock* const added = block.release();
    (tail ? tail->next : head) = added;
    tail = added;
}

CPtr<CInterfaceBlock> CInterfaceBlockList::takeFirst() noexcept
{
    CPtr<CInterfaceBlock> first(head);
    if (!first)
        return first;
    head = std::exchange(first->next, nullptr);
    if (!head)
        tail = nullptr;
    --count;
    byteCount -= first->bytes.getSize();
    return first;
}

void CInterfaceBlockList::takeAll(CInterfaceBlockList& other) noexcept
{
    if (other.isEmpty())
        return;
    (tail ? tail->next : head) = std::exchange(other.head, nullptr);
    tail = std::exchange(other.tail, nullptr);
    count += std::exchange(other.count, 0);
    byteCount += std::exchange(other.byteCount, 0);
}

void CInterfaceBlockList::clear() noexcept
{
    while (!isEmpty())
        takeFirst().reset();
}

} // namespace tsm
