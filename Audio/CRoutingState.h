#pragma once

#include "Core/CArray.h"
#include "Core/COwnedArray.h"
#include "Core/CString.h"

namespace tsm {

/// The names that a host gives its channels.
struct CHostChannelNames {
    COwnedArray<CString> main;
    COwnedArray<CString> sidechain;
};

/// What the routing parameters hold, and the rules by which they follow the host's format.
///
/// As long as the parameters hold what these rules would have written for some format, they may be
/// rewritten for another one; a routing that a user has touched never is.
struct CRoutingState : CCheckedObject {
    static constexpr int kGroupCount = 8;

    CArray<int> inRouting;  // the host input of each internal channel, from 1; 0 is none
    CArray<int> outRouting; // the host output, likewise
    CArray<int> grouping;   // the group of each internal channel
    COwnedArray<CString> channelNames;
    COwnedArray<CString> groupNames;
    CArray<int> midSidePairs;  // empty in a product without mid-side
    CArray<int> sidechain;     // empty in a product without a side-chain, as is the next
    CArray<int> sidechainMute; // 1 in a channel that only feeds the side-chain

    /// Whether the rules could have made this state.
    [[nodiscard]] bool isUntouched() const;
    /// Makes the state for a host's channels, which are one at least. The arrays keep their
    /// lengths where those suffice; `intChannelCount` bounds the side-chain's channels.
    void adapt(const CHostChannelNames& host, int intChannelCount);

private:
    [[nodiscard]] bool areGroupNamesUntouched() const;
    [[nodiscard]] bool isSidechainUntouched() const;
    [[nodiscard]] bool isRoutingUntouched() const;
    [[nodiscard]] bool isMuted(int channel) const;
    void adaptNames(const CHostChannelNames& host);
    void adaptSidechain(int mainCount, int sideCount, int intChannelCount);
};

} // namespace tsm
