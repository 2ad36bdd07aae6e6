#include "Tools/music/CDrumVoices.h"

#include "Tools/music/CNoise.h"
#include "Tools/music/CVoiceMath.h"

#include <cstdint>

namespace tsm {

namespace {

constexpr double kHatPan = 0.35;
constexpr double kSnarePan = -0.12;

/// First-order high-pass of two stages, enough to take the body out of noise.
class CThinner {
public:
    CThinner(double cornerHz, int rate)
        : pole(std::exp(-kTwoPi * std::min(cornerHz, 0.4 * rate) / rate))
    {
    }
    double next(double in)
    {
        for (CStage& stage : stages) {
            stage.low += (1.0 - pole) * (in - stage.low);
            in -= stage.low;
        }
        return in;
    }

private:
    struct CStage {
        double low = 0.0;
    };
    double pole;
    CStage stages[2];
};

/// Where a note lies in a sound: its first frame, and how many of `seconds` there is room for.
struct CSpan {
    CSpan(const CNote& note, double seconds, const CSoundBuffer& out)
        : first(static_cast<std::size_t>(note.start * out.rate)),
          count(first < out.getFrameCount() ? std::min(static_cast<std::size_t>(seconds * out.rate),
                                                       out.getFrameCount() - first)
                                            : 0)
    {
    }
    std::size_t first;
    std::size_t count;
};

/// Noise differs from stroke to stroke but not from run to run.
std::uint64_t seedOf(const CNote& note)
{
    return 0x9e3779b97f4a7c15ULL * static_cast<std::uint64_t>(1.0 + note.start * 1000.0);
}

void addKick(const CNote& note, CSoundBuffer& out)
{
    constexpr double kLength = 0.45;
    const CSpan span(note, kLength, out);
    double phase = 0.0;
    for (std::size_t i = 0; i < span.count; ++i) {
        const double time = static_cast<double>(i) / out.rate;
        // The skin is struck sharp and falls to its own pitch.
        const double hz = 48.0 + 110.0 * std::exp(-time / 0.028);
        phase += kTwoPi * hz / out.rate;
        const double level = std::exp(-time / 0.13) * gate(time, 0.0015, kLength - 0.05, 0.05);
        const double beater = std::exp(-time / 0.004) * std::sin(kTwoPi * 1800.0 * time);
        const double value = note.force * level * (std::sin(phase) + 0.12 * beater);
        out.channels[0][span.first + i] += value;
        out.channels[1][span.first + i] += value;
    }
}

void addSnare(const CNote& note, CSoundBuffer& out)
{
    constexpr double kLength = 0.32;
    const CSpan span(note, kLength, out);
    const CPan pan(kSnarePan);
    CNoise noises[2] = {CNoise(seedOf(note)), CNoise(seedOf(note) ^ 0x5555U)};
    CThinner wires[2] = {CThinner(1600.0, out.rate), CThinner(1600.0, out.rate)};
    const double gains[2] = {pan.left, pan.right};
    for (std::size_t i = 0; i < span.count; ++i) {
        const double time = static_cast<double>(i) / out.rate;
        const double drum = std::exp(-time / 0.055) * (std::sin(kTwoPi * 186.0 * time) +
                                                       0.6 * std::sin(kTwoPi * 331.0 * time));
        const double rattle = std::exp(-time / 0.085);
        const double level = 0.62 * note.force * gate(time, 0.001, kLength - 0.04, 0.04);
        for (std::size_t c = 0; c < 2; ++c)
            out.channels[c][span.first + i] +=
                gains[c] * level * (0.75 * drum + 0.8 * rattle * wires[c].next(noises[c].next()));
    }
}

void addHat(const CNote& note, CSoundBuffer& out)
{
    const bool isOpen = note.instrument == EInstrument::OpenHat;
    const double decay = isOpen ? 0.14 : 0.028;
    const double length = isOpen ? 0.4 : 0.12;
    const CSpan span(note, length, out);
    const CPan pan(kHatPan);
    CNoise noise(seedOf(note) ^ 0xaaaaU);
    CThinner metal(7000.0, out.rate);
    for (std::size_t i = 0; i < span.count; ++i) {
        const double time = static_cast<double>(i) / out.rate;
        const double level =
            0.36 * note.force * std::exp(-time / decay) * gate(time, 0.0006, length - 0.03, 0.03);
        const double value = level * metal.next(noise.next());
        out.channels[0][span.first + i] += pan.left * value;
        out.channels[1][span.first + i] += pan.right * value;
    }
}

} // namespace

void addDrum(const CNote& note, CSoundBuffer& out)
{
    switch (note.instrument) {
    case EInstrument::Kick:
        return addKick(note, out);
    case EInstrument::Snare:
        return addSnare(note, out);
    case EInstrument::Hat:
    case EInstrument::OpenHat:
        return addHat(note, out);
    case EInstrument::Bass:
    case EInstrument::Piano:
        return; // not drums
    }
}

} // namespace tsm
