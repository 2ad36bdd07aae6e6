#include "Audio/CRoutingState.h"

#include "Core/CText.h"

#include <algorithm>

namespace tsm {

namespace {

/// The group of a channel that carries no audio: groups are pairs unless the format says more.
int pairOf(int channel)
{
    return channel / 2;
}

} // namespace

bool CRoutingState::isUntouched() const
{
    const bool hasPairs =
        std::any_of(midSidePairs.begin(), midSidePairs.end(), [](int pair) { return pair != 0; });
    return !hasPairs && areGroupNamesUntouched() && isSidechainUntouched() && isRoutingUntouched();
}

bool CRoutingState::areGroupNamesUntouched() const
{
    if (groupNames.isEmpty())
        return false;
    const CString& first = groupNames[0];
    const auto isFirst = [&](const char* name) { return first == name; };
    constexpr const char* kFirstNames[] = {"1", "G1", "G-1", "MONO", "STEREO", "MULTI"};
    if (std::none_of(std::begin(kFirstNames), std::end(kFirstNames), isFirst))
        return false;
    for (int k = 1; k < groupNames.getCount(); ++k) {
        const CString number = toString(k + 1);
        const CString& name = groupNames[k];
        if (name != number && name != "G" + number && name != "G-" + number)
            return false;
    }
    return true;
}

bool CRoutingState::isSidechainUntouched() const
{
    int runs = 0;
    for (int i = 0; i < sidechainMute.getCount(); ++i)
        runs += isMuted(i) && (i == 0 || !isMuted(i - 1));
    if (runs > 0)
        return runs == 1;
    for (int i = 0; i < sidechain.getCount(); ++i)
        if (sidechain[i] != i)
            return false;
    return true;
}

bool CRoutingState::isRoutingUntouched() const
{
    int used = 0;
    while (used < inRouting.getCount() && inRouting[used] == used + 1)
        ++used;
    for (int i = used; i < inRouting.getCount(); ++i)
        if (inRouting[i] != 0)
            return false;
    if (outRouting.getCount() != inRouting.getCount())
        return false;
    for (int i = 0; i < outRouting.getCount(); ++i)
        if (outRouting[i] != inRouting[i] && !(outRouting[i] == 0 && isMuted(i)))
            return false;
    for (int i = 0; i < grouping.getCount(); ++i)
        if (grouping[i] != (i < used ? 0 : pairOf(i)))
            return false;
    return true;
}

bool CRoutingState::isMuted(int channel) const
{
    return channel < sidechainMute.getCount() && sidechainMute[channel] != 0;
}

void CRoutingState::adapt(const CHostChannelNames& host, int intChannelCount)
{
    const int mainCount = host.main.getCount();
    const int sideCount = host.sidechain.getCount();
    const int total = mainCount + sideCount;
    adaptNames(host);
    if (!sidechain.isEmpty())
        adaptSidechain(mainCount, sideCount, intChannelCount);
    inRouting.resize(std::max(inRouting.getCount(), total));
    outRouting.resize(inRouting.getCount());
    grouping.resize(std::max(grouping.getCount(), total));
    for (int i = 0; i < inRouting.getCount(); ++i) {
        inRouting[i] = i < total ? i + 1 : 0;
        outRouting[i] = isMuted(i) ? 0 : inRouting[i];
    }
    for (int i = 0; i < grouping.getCount(); ++i)
        grouping[i] = i < total ? 0 : pairOf(i);
}

void CRoutingState::adaptNames(const CHostChannelNames& host)
{
    channelNames.clear();
    for (const CString& name : host.main)
        channelNames.create(name);
    for (const CString& name : host.sidechain)
        channelNames.create(name);
    const int mainCount = host.main.getCount();
    groupNames.clear();
    groupNames.create(mainCount == 1 ? "MONO" : (mainCount == 2 ? "STEREO" : "MULTI"));
    for (int k = 1; k < kGroupCount; ++k)
        groupNames.create("G-" + toString(k + 1));
}

void CRoutingState::adaptSidechain(int mainCount, int sideCount, int intChannelCount)
{
    sidechainMute.resize(sidechain.getCount());
    const bool isActive = sideCount > 0 && mainCount < intChannelCount;
    const int first = mainCount;
    const int last = std::min(intChannelCount - 1, mainCount + sideCount - 1);
    const int count = last - first + 1;
    for (int i = 0; i < sidechain.getCount(); ++i) {
        const bool isSide = isActive && i >= first && i <= last;
        sidechainMute[i] = isSide ? 1 : 0;
        sidechain[i] = i;
        if (isActive && i < first)
            sidechain[i] = count == 1 ? first : (i < count ? i + first : i);
    }
}

} // namespace tsm
