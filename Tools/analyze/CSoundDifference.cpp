#include "Tools/analyze/CSoundDifference.h"

#include <algorithm>

namespace tsm {

bool CSoundDifference::of(const CSoundBuffer& a, const CSoundBuffer& b, long delay,
                          CSoundDifference& difference, std::string& error)
{
    if (a.rate != b.rate || a.channels.size() != b.channels.size()) {
        error = "the sounds differ in sample rate or number of channels";
        return false;
    }
    const std::size_t skipA = delay < 0 ? 0 - static_cast<std::size_t>(delay) : 0;
    const std::size_t skipB = delay > 0 ? static_cast<std::size_t>(delay) : 0;
    const CSoundBuffer partA = a.slice(skipA, a.getFrameCount());
    CSoundBuffer rest = b.slice(skipB, b.getFrameCount());
    const std::size_t frames = std::min(partA.getFrameCount(), rest.getFrameCount());
    if (frames == 0) {
        error = "the sounds have no frame in common";
        return false;
    }
    difference.frames = frames;
    difference.unpaired = std::max(partA.getFrameCount(), rest.getFrameCount()) - frames;
    for (std::size_t c = 0; c < rest.channels.size(); ++c) {
        rest.channels[c].resize(frames);
        for (std::size_t i = 0; i < frames; ++i)
            rest.channels[c][i] -= partA.channels[c][i];
    }
    difference.rest = CSoundMeasure::of(rest);
    difference.first = CSoundMeasure::of(partA.slice(0, frames));
    return true;
}

} // namespace tsm
