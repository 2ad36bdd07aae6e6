#pragma once

#include "Core/CEventRegistry.h"
#include "Platform/CCriticalSection.h"

#include <cstdint>

namespace tsm {

/// What the objects of one instance tree share: the numbers of objects and the event registry.
/// Each context is known by its number for as long as it lives, so that an answer from another
/// thread can find out that its tree has gone.
class CObjectContext : public CCheckedObject {
public:
    CObjectContext();
    ~CObjectContext();
    CObjectContext(const CObjectContext&) = delete;
    CObjectContext& operator=(const CObjectContext&) = delete;

    /// Unique in the process. [any]
    [[nodiscard]] std::uint32_t getId() const noexcept { return id; }
    /// The next object number, from 0 on. [any]
    [[nodiscard]] std::int32_t nextObjectId();
    [[nodiscard]] CEventRegistry& getEvents() noexcept { return events; }

    /// Sends an event in the name of an object of the context of that number, which can't end
    /// meanwhile; success when there is none. Errors: those of the event's dispatch. [any]
    [[nodiscard]] static CError* sendTo(std::uint32_t contextId, const CString& senderName,
                                        const CString& eventName, CAttrMap& params);

private:
    friend class CLinkSpread;

    int spreadDepth = 0;
    int spreadCount = 0;
    CCriticalSection counterLock{50};
    std::int32_t objectCount = 0;
    CEventRegistry events;
    std::uint32_t id;
};

/// Counts, while it lives, one object that passes a change of an attribute on to those that follow
/// it. Links may branch and meet again, so that without a bound a document of a few lines could
/// have one change told without end, or deeper than a stack is. On the tree's thread.
class CLinkSpread {
public:
    // Deeper than views nest, and less than 256 KB of stack.
    static constexpr int kMaxDepth = 128;
    static constexpr int kMaxCount = 65536;

    /// `treeContext` may be null: nothing is counted then.
    explicit CLinkSpread(CObjectContext* treeContext) noexcept : context(treeContext)
    {
        if (!context)
            return;
        if (context->spreadDepth++ == 0)
            context->spreadCount = 0;
        ++context->spreadCount;
    }
    ~CLinkSpread()
    {
        if (context)
            --context->spreadDepth;
    }
    CLinkSpread(const CLinkSpread&) = delete;
    CLinkSpread& operator=(const CLinkSpread&) = delete;

    /// True when the change has gone farther than any document of ours means.
    [[nodiscard]] bool isTooFar() const noexcept
    {
        return context && (context->spreadDepth > kMaxDepth || context->spreadCount > kMaxCount);
    }

private:
    CObjectContext* context;
};

} // namespace tsm
