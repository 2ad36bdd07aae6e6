#pragma once

#include "Audio/Processes/CBankedImpulse.h"
#include "Core/CArray.h"
#include "Platform/CCriticalSection.h"

namespace tsm {

/// The impulses that the instances of the process use, and those that they used last, so that all
/// channels and instances share one and going back to an impulse costs next to nothing.
///
/// What is in use stays. Of the rest the longest unused go beyond kMaxUnusedBytes.
class CBankedImpulseCache : public CCheckedObject {
public:
    static constexpr std::size_t kMaxUnusedBytes = std::size_t{16} << 20;

    /// The one of the process. [any]
    [[nodiscard]] static CBankedImpulseCache& get();

    /// As `loadImpulse`, which is called for what isn't here yet. A file is known by its path and
    /// stamp, so a changed one is loaded anew. Errors: those of the load; `impulse` stays then.
    /// [any] Takes a lock for the look-up, and none during a load.
    [[nodiscard]] CError* load(CBankedImpulseRef& impulse, const CImpulseSource& source,
                               double rate, int wantedChannels);
    /// Drops what is beyond the limit; to be called where an impulse was let go of. [any] Takes
    /// the lock.
    void trim();

    /// Impulses held, in use or not; for tests. [any]
    [[nodiscard]] int getCount();
    /// Drops all that aren't in use; for tests and measurements. [any]
    void clear();

private:
    struct CEntry {
        CImpulseSource source;
        double rate = 0.0;
        CBankedImpulseRef impulse;
    };

    [[nodiscard]] CBankedImpulseRef find(const CImpulseSource& source, double rate,
                                         int wantedChannels);
    void enter(const CImpulseSource& source, double rate, const CBankedImpulseRef& impulse);
    void dropUnused(std::size_t allowedBytes);

    CCriticalSection lock{1000};
    COwnedArray<CEntry> entries; // the last used one first
};

} // namespace tsm
