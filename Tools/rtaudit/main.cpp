#include "Tools/Support/CToolMain.h"
#include "Tools/rtaudit/CAuditKinds.h"
#include "Tools/rtaudit/CThreadAudit.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <sstream>

namespace {

using namespace tsm;

std::string joined(const std::set<std::string>& texts)
{
    std::string all;
    for (const std::string& text : texts)
        all += (all.empty() ? "" : ", ") + text;
    return all.empty() ? "-" : all;
}

std::string numbers(const std::set<int>& values)
{
    std::string all;
    for (const int value : values)
        all += " " + std::to_string(value);
    return all;
}

void print(const CAuditRow& row)
{
    const CAuditCounts& worst = row.worst;
    const std::string verdict = auditVerdict(row);
    std::cout << "| " << row.name << " | " << row.blocks << " | " << worst.allocations << " | "
              << worst.frees << " | " << worst.refills << " | " << row.worstAcquisitions << " | "
              << row.worstWaits << " | " << static_cast<double>(row.longestWaitNs) / 1000.0 << " | "
              << worst.systemCalls << numbers(row.systemCalls) << " | " << worst.pageFaults << " | "
              << joined(row.lockOwners) << " | "
              << (verdict.empty() ? (row.isHeavy ? "may" : "ok") : verdict) << " |\n";
}

/// What the waits of a block beside another thread come from.
std::string tellHolds(const CAuditRow& row)
{
    std::ostringstream text;
    text << "\nBeside a busy control thread: " << row.waits << " waits in " << row.blocks
         << " blocks. That thread held the environment's lock " << row.foreignHolds
         << " times, for " << static_cast<double>(row.meanForeignHoldNs) / 1000.0
         << " us of its processor time in the mean and "
         << static_cast<double>(row.longestForeignHoldNs) / 1000.0
         << " us at most, reading the clock included; a longer wait is the time for which the "
            "system put the holder aside.\n";
    return text.str();
}

CError* run(int argc, char** argv)
{
    int blockSize = 512;
    CLI::App app("Counts what the audio path does in each kind of block that it shouldn't; the "
                 "figures are those of the worst block of a kind, after some to warm up.",
                 "reelpath-rtaudit");
    app.add_option("--block", blockSize, "Samples in a host's block")->check(CLI::Range(1, 65536));
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const bool isDone = app.exit(error) == 0;
        if (isDone)
            return nullptr;
        TSM_FAIL("wrong arguments");
    }
    if (!CThreadAudit::isAvailable())
        TSM_FAIL("a sanitizer's build can't count");
    if (!CThreadAudit::countsSystemCalls())
        std::cerr << "reelpath-rtaudit: this kernel doesn't hand system calls over\n";
    std::cout << "| block | count | allocations | frees | refills | locks | waits | "
                 "longest wait, us | system calls | page faults | locks of | verdict |\n"
                 "|---|---|---|---|---|---|---|---|---|---|---|---|\n";
    std::string holds;
    CAuditEngine engine;
    TSM_TRY(engine.start(blockSize));
    for (const CAuditKind& kind : auditKinds()) {
        CAuditRow row;
        if (!runAudit(engine, kind, row))
            continue;
        print(row);
        if (kind.isBeside)
            holds += tellHolds(row);
    }
    std::cout << holds;
    return nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    return tsm::runTool("reelpath-rtaudit", [&] { return run(argc, argv); });
}
