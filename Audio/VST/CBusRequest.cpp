#include "Audio/VST/CBusRequest.h"

#include "Audio/VST/CSpeakerTable.h"
#include "Audio/VST/Interfaces/Speakers.h"

#include <algorithm>

namespace tsm {

namespace {

constexpr int kMaxSidechainChannels = 2;

} // namespace

bool CBusRequest::settle(int maxChannels, bool isSymmetric) noexcept
{
    const bool fits = limit(maxChannels);
    return match(isSymmetric) && fits;
}

bool CBusRequest::limit(int maxChannels) noexcept
{
    bool fits = true;
    const int inCount = Steinberg::Vst::SpeakerArr::getChannelCount(input);
    if (inCount < 1 || inCount > maxChannels) {
        input = CSpeakerTable::findArrangement(maxChannels);
        fits = false;
    }
    if (Steinberg::Vst::SpeakerArr::getChannelCount(output) > maxChannels) {
        output = CSpeakerTable::findArrangement(maxChannels);
        fits = false;
    }
    if (Steinberg::Vst::SpeakerArr::getChannelCount(sidechain) > kMaxSidechainChannels) {
        sidechain = CSpeakerTable::findArrangement(kMaxSidechainChannels);
        fits = false;
    }
    return fits;
}

bool CBusRequest::match(bool isSymmetric) noexcept
{
    const int inCount = Steinberg::Vst::SpeakerArr::getChannelCount(input);
    const int outCount = Steinberg::Vst::SpeakerArr::getChannelCount(output);
    if (inCount == outCount)
        return true;
    if (isSymmetric) {
        input = output = CSpeakerTable::findArrangement(std::max(inCount, outCount));
        return false;
    }
    if (inCount == 1 || outCount == 2)
        return true;
    input = CSpeakerTable::findArrangement(1);
    output = CSpeakerTable::findArrangement(2);
    return false;
}

} // namespace tsm
