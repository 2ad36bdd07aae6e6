#include "Audio/CAudioPort.h"

#include <algorithm>

namespace tsm {
namespace {

constexpr int kMaxTerms = 4;

struct CAdd {
    double operator()(double a, double b) const { return a + b; }
};

struct CLarger {
    double operator()(double a, double b) const { return a > b ? a : b; }
};

/// out = ((a + b) + c) + d, in this order; `Count` terms.
template <int Count, class Operation>
void foldTerms(const double* const* terms, double* __restrict out, int length)
{
    const double* const a = terms[0];
    const double* const b = terms[1];
    const double* const c = terms[Count > 2 ? 2 : 0];
    const double* const d = terms[Count > 3 ? 3 : 0];
    const Operation join;
    for (int i = 0; i < length; ++i) {
        double result = join(a[i], b[i]);
        if constexpr (Count > 2)
            result = join(result, c[i]);
        if constexpr (Count > 3)
            result = join(result, d[i]);
        out[i] = result;
    }
}

template <class Operation>
void foldTerms(const double* const* terms, int termCount, double* out, int length)
{
    if (termCount == 2)
        foldTerms<2, Operation>(terms, out, length);
    else if (termCount == 3)
        foldTerms<3, Operation>(terms, out, length);
    else
        foldTerms<4, Operation>(terms, out, length);
}

} // namespace

const CAudioChannel* CAudioPort::findChannel(std::uint32_t channel) const noexcept
{
    for (int i = 0; i < channelCount; ++i)
        if (channels[i].result.channel == channel)
            return &channels[i].result;
    return nullptr;
}

double CAudioPort::getSampleRate() const noexcept
{
    for (const CAudioLink& link : links)
        if (link.getFormat().channelCount > 0)
            return link.getFormat().sampleRate;
    return 0.0;
}

CAudioLink& CAudioPort::addLink(CAudioProcessBase* source, int sourcePort)
{
    raiseInputChange();
    return links.add(new CAudioLink(source, sourcePort, *this));
}

void CAudioPort::removeLink(CAudioLink& link)
{
    raiseInputChange();
    // The channels refer to the link until the next rebuild.
    for (int i = 0; i < kMaxPortChannels; ++i) {
        channels[i].sole = nullptr;
        sources[i].clear();
    }
    links.remove(links.indexOf(&link));
}

int CAudioPort::findLatency() const noexcept
{
    int latency = 0;
    for (const CAudioLink& link : links)
        for (int i = 0; i < link.getFormat().channelCount; ++i)
            latency = std::max(latency, link.getFormat().channels[i].latency);
    return latency;
}

/// The sources of a channel, which gets its place in order of the slots; a new one gets the group
/// of its first source.
CAudioPort::CSources& CAudioPort::sourcesOf(const CAudioChannelFormat& format)
{
    int at = 0;
    while (at < channelCount && channels[at].result.channel < format.channel)
        ++at;
    if (at < channelCount && channels[at].result.channel == format.channel)
        return sources[at];
    assert(channelCount < kMaxPortChannels);
    std::move_backward(channels + at, channels + channelCount, channels + channelCount + 1);
    std::move_backward(sources + at, sources + channelCount, sources + channelCount + 1);
    ++channelCount;
    static_cast<CAudioChannelFormat&>(channels[at].result) = format;
    channels[at].result.buffer.reset();
    sources[at].clear();
    return sources[at];
}

bool CAudioPort::rebuild(CAudioBlockPool& pool, int inputLatency)
{
    CAudioChannelFormat former[kMaxPortChannels];
    const int formerCount = channelCount;
    for (int i = 0; i < formerCount; ++i)
        former[i] = channels[i].result;
    release();
    channelCount = 0;
    for (CAudioLink& link : links) {
        link.fitDelays(pool, inputLatency);
        for (int i = 0; i < link.getFormat().channelCount; ++i)
            if (link.getFormat().channels[i].channel < kMaxPortChannels)
                sourcesOf(link.getFormat().channels[i]).add({&link, i});
    }
    bool isChanged = channelCount != formerCount;
    for (int i = 0; i < channelCount; ++i) {
        const bool isSole = sources[i].getCount() == 1;
        channels[i].sole = isSole ? sources[i][0].link : nullptr;
        channels[i].soleIndex = isSole ? sources[i][0].index : 0;
        CAudioChannelFormat& format = channels[i].result;
        isChanged |= format.channel != former[i].channel || format.group != former[i].group;
        format.latency = inputLatency;
    }
    return isChanged;
}

const CAudioLink* CAudioPort::findUsedLink() const noexcept
{
    for (const CAudioLink& link : links)
        if (link.hasChannels())
            return &link;
    return nullptr;
}

CAudioLink* CAudioPort::findStraightLink() const noexcept
{
    if (links.getCount() != 1)
        return nullptr;
    CAudioLink& link = links[0];
    bool isStraight = link.getFormat().channelCount == channelCount && !link.hasDelay();
    for (int i = 0; i < channelCount; ++i)
        isStraight &= channels[i].sole && channels[i].soleIndex == i;
    return isStraight ? &link : nullptr;
}

void CAudioPort::resetDelays()
{
    for (CAudioLink& link : links)
        link.resetDelays();
}

CAudioBlockRef CAudioPort::combine(const CSources& sources, CAudioBlockPool& pool, int length,
                                   EInputCombo combo, bool isFilledByInput)
{
    CAudioBlockRef held[kMaxTerms];
    const double* terms[kMaxTerms];
    int termCount = 0;
    int sourceCount = 0;
    const auto fold = [&] {
        CAudioBlockRef result = pool.take(length);
        if (combo == EInputCombo::Maximum)
            foldTerms<CLarger>(terms, termCount, result.write(), length);
        else
            foldTerms<CAdd>(terms, termCount, result.write(), length);
        for (CAudioBlockRef& block : held)
            block.reset();
        terms[0] = result.read();
        held[0] = std::move(result);
        termCount = 1;
    };
    for (const CSource& source : sources) {
        CAudioBlockRef block = source.link->takeInTime(source.index, pool, length, isFilledByInput);
        if (!block)
            continue;
        ++sourceCount;
        terms[termCount] = block.read();
        held[termCount++] = std::move(block);
        if (termCount == kMaxTerms)
            fold();
    }
    if (termCount > 1)
        fold();
    if (combo == EInputCombo::Mean && sourceCount > 1) {
        const double scale = 1.0 / sourceCount;
        double* samples = held[0].write();
        for (int i = 0; i < length; ++i)
            samples[i] *= scale;
    }
    return held[0];
}

} // namespace tsm
