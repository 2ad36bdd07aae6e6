#pragma once

#include "Core/CArray.h"

namespace tsm {

class CAudioLink;
class CAudioProcessBase;

/// The work of a sub-block, without what has nothing to do while the graph stays as it is:
/// containers and their outlets that only hand blocks on are passed over, and the links that end in
/// them lead to where their blocks are wanted. [audio]
class CAudioGraphSteps : public CCheckedObject {
public:
    CAudioGraphSteps() = default;
    CAudioGraphSteps(const CAudioGraphSteps&) = delete;
    CAudioGraphSteps& operator=(const CAudioGraphSteps&) = delete;

    /// Lets one sub-block pass through the graph below `root`: step by step if no process has to be
    /// brought up to date, else as a whole, after which the steps are listed anew.
    void run(CAudioProcessBase& root);
    /// Drops the list. While there is one, links and processes are made and ended by run() only: to
    /// be called before anyone else does, and before a reset.
    void forget();

    // For the processes, which list themselves.

    /// Whether nothing is listed yet. The root's input arrives before it is known what kind of
    /// sub-block it is for, so it always ends there.
    [[nodiscard]] bool isAtRoot() const noexcept { return watched.isEmpty(); }
    /// A process that works in each sub-block.
    void add(CAudioProcessBase& process);
    /// One that has nothing to do until it wants to be brought up to date.
    void watch(const CAudioProcessBase& process) { watched.add(&process); }
    /// All blocks of a link go to another of the same format.
    void tie(CAudioLink& from, CAudioLink& to) { ties.add({&from, &to}); }

private:
    struct CTie {
        CAudioLink* from;
        CAudioLink* to;
    };

    [[nodiscard]] bool isSteady() const noexcept;
    void tieLinks();

    CArray<CAudioProcessBase*, 32> steps;
    CArray<const CAudioProcessBase*, 32> watched; // the steps among them
    CArray<CTie, 32> ties;                        // in the order of the work
    bool isListed = false;
    bool isTied = false; // implies isListed
};

} // namespace tsm
