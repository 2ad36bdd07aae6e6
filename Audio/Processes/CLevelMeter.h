#pragma once

#include "Audio/Processes/CKWeighting.h"
#include "Audio/Processes/CPeakHold.h"
#include "Core/CArray.h"

namespace tsm {

class CLevelMeter;

/// What a meter integrates.
enum class EMeterKind {
    Plain,      ///< the square; rises pass at once, falls by the release time
    Minimum,    ///< the same reversed; with a bias the square over its own slow mean
    Difference, ///< the ratio of the mean squares of both inputs; with a bias that over its mean
    Loudness,   ///< the K-weighted square (ITU-R BS.1770-4) over the last integration time
};

struct CMeterSettings {
    EMeterKind kind = EMeterKind::Plain;
    bool useBias = false; // for kinds that have one
    double sampleRate = 44100.0;
    double peakSeconds = 1.0; // that a peak is held
    double rmsSeconds = 0.15;
    double releaseSeconds = 0.5;
    double biasSeconds = 2.0;
};

/// The samples of one meter for a measurement.
struct CMeterLane {
    CLevelMeter* meter = nullptr;
    const double* in = nullptr;
    const double* reference = nullptr; // of a difference
};

/// The ballistics of a level meter: an integrator of squares, a follower that is quick in one
/// direction, frames of 25 ms with a peak each, and the peaks held for a while. [audio]
class CLevelMeter : public CCheckedObject {
public:
    static constexpr int kMaxLanes = 2;

    /// Takes settings and starts again. Allocates from the block allocator when a window grows.
    void prepare(const CMeterSettings& newSettings);
    /// Starts again: levels and frames.
    void restart() noexcept;
    /// Starts the levels again; the frames go on.
    void restartLevels() noexcept;

    /// True when both have the same kernel and their frames end at the same samples.
    [[nodiscard]] bool isInStepWith(const CLevelMeter& other) const noexcept
    {
        return kernel == other.kernel && frameLength == other.frameLength &&
               frameCountdown == other.frameCountdown;
    }
    /// Measures `count` samples by one to kMaxLanes meters that are in step. Two take hardly longer
    /// than one, since each sample waits for the one before. The lanes are used up.
    static void measure(CMeterLane* lanes, int laneCount, int count) noexcept;

    /// The level, linear: of a difference the ratio of levels, of loudness with the factor that
    /// displays want.
    [[nodiscard]] double getLevel() const noexcept;
    /// What is held, or the present frame's; likewise. Loudness has the peak of the samples as they
    /// come, a difference without bias its level.
    [[nodiscard]] double getPeak() const noexcept;

    /// The coefficient of an integrator that reaches `seconds` as its stated time at that rate.
    [[nodiscard]] static double coefficient(double seconds, double sampleRate) noexcept;

private:
    using CKernel = void (*)(const CMeterLane* lanes, int laneCount, int count) noexcept;
    /// A kernel of one lane at a time.
    template <void (CLevelMeter::*kRun)(const CMeterLane& lane, int count) noexcept>
    static void runEach(const CMeterLane* lanes, int laneCount, int count) noexcept;

    [[nodiscard]] CKernel chooseKernel() const noexcept;
    static void runPlain(const CMeterLane* lanes, int laneCount, int count) noexcept;
    static void runRatio(const CMeterLane* lanes, int laneCount, int count) noexcept;
    template <bool kUseBias>
    void runMinimum(const CMeterLane& lane, int count) noexcept;
    void runBiasedRatio(const CMeterLane& lane, int count) noexcept;
    void runLoudness(const CMeterLane& lane, int count) noexcept;
    void endFrame() noexcept;
    void endLoudnessFrame() noexcept;

    // Constant while the settings hold.
    CMeterSettings settings;
    CKernel kernel = runPlain;
    bool isBiased = false;
    bool isMinimum = false; // the smallest values are held
    int frameLength = 1;    // samples
    double rmsCoefficient = 1.0;
    double releaseCoefficient = 1.0;
    double biasCoefficient = 1.0;

    // Mean squares, unless told otherwise.
    double rms = 0.0;
    double rms2 = 0.0; // of the reference
    double rel = 0.0;  // for loudness the sum over `energies`
    double bias = 0.0;
    double peakNow = 0.0; // of the frame; for loudness linear
    int frameCountdown = 1;
    CPeakHold hold;
    CKWeighting weighting;
    CArray<double, 1> energies; // of the frames within the integration time
    int energyIndex = 0;
    double frameEnergy = 0.0;
};

} // namespace tsm
