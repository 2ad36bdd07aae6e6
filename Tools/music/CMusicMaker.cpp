#include "Tools/music/CMusicMaker.h"

#include "Tools/Support/CMusicSections.h"
#include "Tools/music/CBassVoice.h"
#include "Tools/music/CDrumVoices.h"
#include "Tools/music/CPianoVoice.h"
#include "Tools/music/CVoiceMath.h"

#include <cassert>
#include <cmath>

namespace tsm {

namespace {

void play(const CNote& note, CSoundBuffer& out)
{
    switch (note.instrument) {
    case EInstrument::Bass:
        return addBassNote(note, out);
    case EInstrument::Piano:
        return addPianoNote(note, out);
    default:
        return addDrum(note, out);
    }
}

void addSine(CSoundBuffer& out)
{
    for (std::vector<double>& channel : out.channels)
        for (std::size_t i = 0; i < channel.size(); ++i)
            channel[i] += std::sin(kTwoPi * kMusicSineHz * static_cast<double>(i) / out.rate);
}

void scaleToPeak(double peakDb, CSoundBuffer& sound)
{
    double peak = 0.0;
    for (const std::vector<double>& channel : sound.channels)
        for (const double sample : channel)
            peak = std::max(peak, std::abs(sample));
    if (peak == 0.0)
        return;
    const double gain = std::pow(10.0, peakDb / 20.0) / peak;
    for (std::vector<double>& channel : sound.channels)
        for (double& sample : channel)
            sample *= gain;
}

void fadeOut(std::size_t frames, CSoundBuffer& sound)
{
    const std::size_t length = sound.getFrameCount();
    for (std::vector<double>& channel : sound.channels)
        for (std::size_t i = 1; i <= std::min(frames, length); ++i)
            channel[length - i] *=
                smoothStep((static_cast<double>(i) - 0.5) / static_cast<double>(frames));
}

void fadeIn(std::size_t frames, CSoundBuffer& sound)
{
    for (std::vector<double>& channel : sound.channels)
        for (std::size_t i = 0; i < std::min(frames, channel.size()); ++i)
            channel[i] *= smoothStep(static_cast<double>(i) / static_cast<double>(frames));
}

CSoundBuffer makeSection(const CMusicSection& section, int rate, std::size_t frames)
{
    CSoundBuffer sound(rate, 2, frames);
    const auto fadeFrames = static_cast<std::size_t>(kMusicFadeSeconds * rate);
    if (section.kind == EMusicSection::Sine) {
        addSine(sound);
        fadeIn(fadeFrames, sound); // notes rise by themselves and keep their attack
    }
    for (const CNote& note : scoreOfSection(section.kind, section.end - section.start))
        play(note, sound);
    fadeOut(fadeFrames, sound);
    scaleToPeak(section.peakDb, sound);
    return sound;
}

} // namespace

CSoundBuffer CMusicMaker::make(double seconds, int rate)
{
    assert(seconds >= kMinSeconds && seconds <= kMaxSeconds);
    assert(rate >= kMinRate && rate <= kMaxRate);
    const auto frameAt = [rate](double time) {
        return static_cast<std::size_t>(std::lround(time * rate));
    };
    CSoundBuffer music(rate, 2, frameAt(seconds));
    for (const CMusicSection& section : musicSections(seconds)) {
        const std::size_t first = frameAt(section.start);
        const std::size_t end = std::min(frameAt(section.end), music.getFrameCount());
        const CSoundBuffer sound = makeSection(section, rate, end - first);
        for (std::size_t c = 0; c < music.channels.size(); ++c)
            std::ranges::copy(sound.channels[c],
                              music.channels[c].begin() + static_cast<std::ptrdiff_t>(first));
    }
    return music;
}

} // namespace tsm
