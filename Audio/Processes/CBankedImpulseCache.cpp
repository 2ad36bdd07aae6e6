#include "Audio/Processes/CBankedImpulseCache.h"

#include <algorithm>

namespace tsm {

CBankedImpulseCache& CBankedImpulseCache::get()
{
    static CBankedImpulseCache cache;
    return cache;
}

CError* CBankedImpulseCache::load(CBankedImpulseRef& impulse, const CImpulseSource& source,
                                  double rate, int wantedChannels)
{
    CBankedImpulseRef found = find(source, rate, wantedChannels);
    if (!found) {
        // Not under the lock, or a long file of one instance would keep all others waiting. Two
        // that want the same at the same time both load it.
        TSM_TRY(loadImpulse(found, source, rate, wantedChannels));
        enter(source, rate, found);
    }
    impulse = std::move(found);
    return nullptr;
}

CBankedImpulseRef CBankedImpulseCache::find(const CImpulseSource& source, double rate,
                                            int wantedChannels)
{
    const CLockScope scope(lock);
    for (int i = 0; i < entries.getCount(); ++i) {
        const CEntry& entry = entries[i];
        if (entry.rate != rate || !(entry.source == source))
            continue;
        const int wanted = std::min(wantedChannels, entry.impulse->fileChannelCount);
        if (entry.impulse->channels.getCount() < wanted)
            continue;
        entries.insert(0, entries.take(i));
        return entries[0].impulse;
    }
    return nullptr;
}

void CBankedImpulseCache::enter(const CImpulseSource& source, double rate,
                                const CBankedImpulseRef& impulse)
{
    const CLockScope scope(lock);
    entries.insert(0, new CEntry{source, rate, impulse});
    dropUnused(kMaxUnusedBytes);
}

void CBankedImpulseCache::trim()
{
    const CLockScope scope(lock);
    dropUnused(kMaxUnusedBytes);
}

int CBankedImpulseCache::getCount()
{
    const CLockScope scope(lock);
    return entries.getCount();
}

void CBankedImpulseCache::clear()
{
    const CLockScope scope(lock);
    dropUnused(0);
}

/// An impulse that only this cache holds can't come into use meanwhile: that takes the lock.
void CBankedImpulseCache::dropUnused(std::size_t allowedBytes)
{
    std::size_t bytes = 0;
    for (int i = 0; i < entries.getCount();) {
        const CBankedImpulseRef& impulse = entries[i].impulse;
        if (impulse.use_count() == 1)
            bytes += impulse->getByteCount();
        if (impulse.use_count() == 1 && bytes > allowedBytes)
            entries.remove(i);
        else
            ++i;
    }
}

} // namespace tsm
