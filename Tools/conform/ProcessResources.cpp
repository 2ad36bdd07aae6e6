#include "Tools/conform/ProcessResources.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace tsm {

namespace {

int countEntries(const char* folder)
{
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        static_cast<void>(entry);
        ++count;
    }
    return count;
}

} // namespace

CProcessResources CProcessResources::measure()
{
    CProcessResources resources;
    resources.descriptorCount = countEntries("/proc/self/fd");
    resources.threadCount = countEntries("/proc/self/task");
    long ignored = 0;
    // Size, resident, shared, text, library, data: all in pages.
    std::ifstream("/proc/self/statm") >> ignored >> ignored >> ignored >> ignored >> ignored >>
        resources.mappedPages;
    resources.heap = getHeapUse();
    return resources;
}

void CProcessResources::compareHandles(const CProcessResources& before, int rounds,
                                       CFindings& findings) const
{
    const std::string behind = " behind " + std::to_string(rounds) + " rounds";
    findings.expect(threadCount <= before.threadCount, "threads" + behind,
                    std::to_string(before.threadCount), std::to_string(threadCount));
    findings.expect(descriptorCount <= before.descriptorCount, "file descriptors" + behind,
                    std::to_string(before.descriptorCount), std::to_string(descriptorCount));
}

void CProcessResources::compare(const CProcessResources& before, int rounds,
                                CFindings& findings) const
{
    compareHandles(before, rounds, findings);
    const std::string behind = " behind " + std::to_string(rounds) + " rounds";
    // A block in every fourth round, or 16 bytes in every round: below that is the noise of tables
    // that grow by doubling and of what the system's libraries keep.
    const std::int64_t blocks = heap.blockCount - before.heap.blockCount;
    findings.expect(blocks < rounds / 4 + 2, "heap blocks" + behind, "about as many as before",
                    std::to_string(blocks) + " more");
    constexpr std::int64_t kFreeBytes = 4096;
    const std::int64_t bytes = heap.byteCount - before.heap.byteCount;
    findings.expect(bytes < 16 * std::int64_t{rounds} + kFreeBytes, "heap bytes" + behind,
                    "about as many as before", std::to_string(bytes) + " more");
    // Memory beside the heap, at least a page a round; a heap's own arenas are far from that.
    constexpr long kFreePages = 2048;
    const long pages = mappedPages - before.mappedPages;
    findings.expect(pages < rounds + kFreePages || !isHeapPlain(), "pages of memory" + behind,
                    "about as many as before", std::to_string(pages) + " more");
}

} // namespace tsm
