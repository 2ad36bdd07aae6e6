#include "Tools/music/CPianoVoice.h"

#include "Tools/music/CVoiceMath.h"

namespace tsm {

namespace {

constexpr double kReleaseSeconds = 0.14;
constexpr double kGain = 0.24; // of one note of four, beside the drums
constexpr double kTineRatio = 14.0;
constexpr double kTremoloHz = 2.0; // a swing a bar's half
constexpr double kTremoloDepth = 0.45;
constexpr double kRegisterPan = 0.012; // a semitone's way from the middle of the keyboard

/// Both pairs at a time after the stroke. The modulation fades faster than the tone, which makes
/// the stroke bright and the rest round.
double toneAt(double time, double hz, double force, bool hasTine)
{
    const double phase = kTwoPi * hz * time;
    const double bodyIndex = 1.1 * force * std::exp(-time / 0.35);
    const double body = std::sin(phase + bodyIndex * std::sin(phase));
    if (!hasTine)
        return body;
    const double tineIndex = 0.5 * force * std::exp(-time / 0.06);
    return body + 0.35 * std::sin(phase + tineIndex * std::sin(kTineRatio * phase));
}

} // namespace

void addPianoNote(const CNote& note, CSoundBuffer& out)
{
    const double hz = noteHz(note.pitch);
    // Two sidebands above the tine are what its index lets through.
    const bool hasTine = (2.0 * kTineRatio + 1.0) * hz < 0.48 * out.rate;
    const auto first = static_cast<std::size_t>(note.start * out.rate);
    const auto count = static_cast<std::size_t>((note.held + kReleaseSeconds) * out.rate);
    const std::size_t end = std::min(out.getFrameCount(), first + count);
    for (std::size_t i = first; i < end; ++i) {
        const double time = static_cast<double>(i - first) / out.rate;
        const double level = kGain * note.force * std::exp(-time / 1.3) *
                             gate(time, 0.002, note.held, kReleaseSeconds);
        const double swing = std::sin(kTwoPi * kTremoloHz * static_cast<double>(i) / out.rate);
        const CPan pan(kTremoloDepth * swing + kRegisterPan * (note.pitch - 60));
        const double value = level * toneAt(time, hz, note.force, hasTine);
        out.channels[0][i] += pan.left * value;
        out.channels[1][i] += pan.right * value;
    }
}

} // namespace tsm
