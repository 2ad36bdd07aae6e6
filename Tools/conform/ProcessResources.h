#pragma once

#include "Tools/Support/HeapWatch.h"
#include "Tools/conform/CFindings.h"

namespace tsm {

/// What this process holds of the system.
struct CProcessResources {
    CHeapUse heap;
    long mappedPages = 0; // its own, beside files
    int descriptorCount = 0;
    int threadCount = 0;

    /// [control]
    [[nodiscard]] static CProcessResources measure();
    /// Finds what has grown since `before`, in so many equal rounds: threads and descriptors at
    /// all, the heap by more than one could take for a table that still grows.
    void compare(const CProcessResources& before, int rounds, CFindings& findings) const;
    /// Threads and descriptors alone.
    void compareHandles(const CProcessResources& before, int rounds, CFindings& findings) const;
};

} // namespace tsm
