#pragma once

#include <cstdint>

namespace tsm {

/// A last-in-first-out list of memory blocks that any number of threads may push to and pop from
/// without a lock (Treiber, "Systems Programming: Coping with Parallelism", 1986). The link to the
/// next block lies in the first 8 bytes of a block while it is on the list.
///
/// A tag beside the head counts the changes, so a thread that was stopped between reading the head
/// and exchanging it can't mistake a block that came back for one that never left. Blocks must stay
/// readable memory for the life of the list, also while they are off it.
class CLockFreeStack {
public:
    constexpr CLockFreeStack() = default;
    CLockFreeStack(const CLockFreeStack&) = delete;
    CLockFreeStack& operator=(const CLockFreeStack&) = delete;

    /// Puts a block on the list; it has at least 8 bytes, aligned to 8. [any]
    void push(void* block) noexcept { pushChain(block, block); }

    /// Puts a chain of blocks on the list in one step; all but `last` were joined by `link`. [any]
    void pushChain(void* first, void* last) noexcept
    {
        for (;;) {
            const CHead old = read();
            link(last, old.first);
            if (exchange(old, first))
                return;
        }
    }

    /// Takes the block off that was put on last; null when the list is empty. [any]
    [[nodiscard]] void* pop() noexcept
    {
        for (;;) {
            const CHead old = read();
            if (!old.first)
                return nullptr;
            if (exchange(old, nextOf(old.first)))
                return old.first;
        }
    }

    /// Makes `next` the follower of `block`, which is on no list.
    static void link(void* block, void* next) noexcept
    {
        __atomic_store_n(static_cast<void**>(block), next, __ATOMIC_RELAXED);
    }

private:
    struct CHead {
        void* first;
        std::uint64_t tag;
    };
    __extension__ using CWord = unsigned __int128;
    using CHalf [[gnu::may_alias]] = std::uint64_t;

    // The tag comes first: when the exchange finds it unchanged, the address and the link were read
    // while that very head was in place. A torn pair fails the exchange.
    [[nodiscard]] CHead read() const noexcept
    {
        const auto* halves = reinterpret_cast<const CHalf*>(&word);
        const std::uint64_t tag = __atomic_load_n(halves + 1, __ATOMIC_ACQUIRE);
        return {reinterpret_cast<void*>(__atomic_load_n(halves, __ATOMIC_ACQUIRE)), tag};
    }

    // The old builtin, since g++ 12 compiles it to cmpxchg16b itself and calls libatomic for the
    // new one.
    bool exchange(const CHead& old, void* first) noexcept
    {
        return __sync_bool_compare_and_swap(&word, join(old.first, old.tag),
                                            join(first, old.tag + 1));
    }

    // Between reading the head and this read another thread may have popped the block and have put
    // its own data here. The value is then wrong, but the tag has changed and the exchange throws
    // it away. The sanitizers can't know that, so they don't look at this one read.
    __attribute__((no_sanitize("thread"), no_sanitize("address"))) static void*
    nextOf(const void* block) noexcept
    {
        return __atomic_load_n(static_cast<void* const*>(block), __ATOMIC_RELAXED);
    }

    static CWord join(void* first, std::uint64_t tag) noexcept
    {
        return static_cast<CWord>(tag) << 64 | reinterpret_cast<std::uintptr_t>(first);
    }

    alignas(16) CWord word = 0;
};

} // namespace tsm
