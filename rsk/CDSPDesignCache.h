#pragma once

#include "Core/CArray.h"
#include "Platform/CCriticalSection.h"

namespace tsm::rsk {

/// Designs that are slow to make and often wanted again, the most recently used first.
///
/// `Design` has a type `CKey` with ==, a constructor from it, and a member `key`. What is in use
/// stays; of the rest the longest unused one goes when there are more than `MaxCount`. The cache
/// outlives all that hold its designs.
template <class Design, int MaxCount>
class CDSPDesignCache {
    struct CEntry {
        Design* design;
        int useCount;
    };

public:
    using CKey = typename Design::CKey;

    /// Holds a design and so keeps it in the cache.
    class CHold {
    public:
        CHold(CDSPDesignCache& from, const CKey& key) : cache(from), design(from.take(key)) {}
        CHold(const CHold&) = delete;
        CHold& operator=(const CHold&) = delete;
        ~CHold() { cache.giveBack(design); }
        const Design& operator*() const { return *design; }
        const Design* operator->() const { return design; }

    private:
        CDSPDesignCache& cache;
        const Design* design;
    };

    CDSPDesignCache() = default;
    CDSPDesignCache(const CDSPDesignCache&) = delete;
    CDSPDesignCache& operator=(const CDSPDesignCache&) = delete;
    ~CDSPDesignCache()
    {
        for (const CEntry& entry : entries)
            delete entry.design;
    }

    /// Designs held at present, in use or not. [any]
    [[nodiscard]] int getCount()
    {
        const CLockScope scope(lock);
        return entries.getCount();
    }

private:
    /// Designs under the lock: two chains of the same rates shall not both do the work.
    const Design* take(const CKey& key)
    {
        const CLockScope scope(lock);
        CEntry entry{nullptr, 0};
        for (int i = 0; i < entries.getCount() && !entry.design; ++i)
            if (entries[i].design->key == key) {
                entry = entries[i];
                entries.remove(i);
            }
        if (!entry.design)
            entry.design = new Design(key);
        ++entry.useCount;
        entries.insert(0, entry);
        trim();
        return entry.design;
    }
    void giveBack(const Design* design)
    {
        const CLockScope scope(lock);
        for (CEntry& entry : entries)
            if (entry.design == design)
                --entry.useCount;
        trim();
    }
    void trim()
    {
        for (int i = entries.getCount() - 1; i >= 0 && entries.getCount() > MaxCount; --i)
            if (entries[i].useCount == 0) {
                delete entries[i].design;
                entries.remove(i);
            }
    }

    CCriticalSection lock{1000};
    CArray<CEntry> entries;
};

} // namespace tsm::rsk
