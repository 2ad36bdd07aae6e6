#include "Tools/Support/CCommandLine.h"
#include "Tools/Support/CToolMain.h"
#include "Tools/rtaudit/CAuditKinds.h"
#include "Tools/rtaudit/CBusyCores.h"
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
    const auto us = [](std::int64_t ns) { return static_cast<double>(ns) / 1000.0; };
    std::ostringstream text;
    text << "\nBeside a busy control thread: " << row.waits << " waits in " << row.blocks
         << " blocks, " << row.longWaits << " of them beyond " << us(CLockCounts::kLongWaitNs)
         << " us, the longest " << us(row.longestWaitNs) << " us. For " << us(row.asideNs)
         << " us of that the audio thread could have gone on, but the system put it aside. That "
            "thread held the environment's lock "
         << row.foreignHolds << " times, for " << us(row.meanForeignHoldNs)
         << " us of its processor time in the mean and " << us(row.longestForeignHoldNs)
         << " us at most, reading the clock included; "
         << (row.isRealtime
                 ? "the audio thread has a real-time priority, which the holder inherits."
                 : "a longer wait is the time for which the system put the holder or the audio "
                   "thread aside: this process may not give its audio thread a real-time "
                   "priority, so there is none that the holder could inherit.")
         << "\n";
    return text.str();
}

struct CAuditOptions {
    int blockSize = 512;
    int busyCores = 0;
    std::string word;
};

void describe(CLI::App& app, CAuditOptions& options)
{
    app.add_option("--block", options.blockSize, "Samples in a host's block")
        ->check(CLI::Range(1, 65536));
    app.add_option("--load", options.busyCores,
                   "Busy threads of others beside the kinds of block with a control thread")
        ->check(CLI::Range(0, 256));
    app.add_option("--only", options.word, "Only kinds of block with that word in their names");
}

CError* run(int argc, char** argv)
{
    CAuditOptions options;
    bool isDone = false;
    TSM_TRY(parseCommandLine(
        argc, argv, "reelpath-rtaudit",
        "Counts what the audio path does in each kind of block that it shouldn't; the figures are "
        "those of the worst block of a kind, after some to warm up.",
        [&](CLI::App& app) { describe(app, options); }, isDone));
    if (isDone)
        return nullptr;
    if (!CThreadAudit::isAvailable())
        TSM_FAIL("a sanitizer's build can't count");
    if (!CThreadAudit::countsSystemCalls())
        std::cerr << "reelpath-rtaudit: this kernel doesn't hand system calls over\n";
    std::cout << "| block | count | allocations | frees | refills | locks | waits | "
                 "longest wait, us | system calls | page faults | locks of | verdict |\n"
                 "|---|---|---|---|---|---|---|---|---|---|---|---|\n";
    std::string holds;
    CAuditEngine engine;
    TSM_TRY(engine.start(options.blockSize));
    for (const CAuditKind& kind : auditKinds()) {
        if (std::string(kind.name).find(options.word) == std::string::npos)
            continue;
        CAuditRow row;
        const CBusyCores others(kind.isBeside ? options.busyCores : 0);
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
