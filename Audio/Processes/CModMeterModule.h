#pragma once

#include "Audio/CAudioModule.h"
#include "Audio/CAudioVizDataMeter.h"
#include "Audio/Processes/CKWeighting.h"
#include "Audio/Processes/CPeakHold.h"
#include "Core/CPtr.h"

namespace tsm {

class CAudioVizSource;
class CModMeterDef;

/// The level of one channel, sent to the windows as records.
///
/// An integrator of the squared samples is followed at once in one direction and by a release time
/// in the other; frames of 25 ms give peaks that are held for a while. What is integrated depends
/// on the kernel:
/// - plain: the square; rises pass at once.
/// - minimum (`is-compression`): the same reversed; with a bias the square over its own slow mean.
/// - difference (`is-diff`): the ratio of both inputs' mean squares; with a bias that ratio over
/// its
///   own slow mean, of which the smallest value is held.
/// - loudness (`use-ebu128`): the mean of the K-weighted square (Recommendation ITU-R BS.1770-4)
///   over the last frames within the integration time; the peak is that of the samples as they
///   come.
class CModMeterModule : public CAudioModule {
public:
    void init() override;
    void reset() override;
    void update() override;
    void registerParams() override;

    /// Takes times and switches from the parameters, chooses the kernel, and starts the levels
    /// again. [audio] Allocates from the block allocator when the hold time grows.
    virtual void recalculate();
    /// Measures samples of the present sub-block. [audio]
    virtual void processBlock(int first, int count);
    /// A record of the levels, linear; place and time are the caller's to fill in. [audio]
    /// Allocates from the block allocator.
    [[nodiscard]] virtual CPtr<CAudioVizDataMeter> makeData();

    static void processModules(CAudioModule* const* modules, int count);

    /// The coefficient of an integrator that reaches `seconds` as its stated time at that rate.
    [[nodiscard]] static double coefficient(double seconds, double sampleRate) noexcept;

private:
    using CKernel = void (CModMeterModule::*)(const double* in, const double* reference, int count);

    void process();
    void send(double time);
    void restartLevels();
    void restartInterval();
    void followWindows();
    [[nodiscard]] bool areSettingsChanged() const noexcept;
    [[nodiscard]] bool isOn(const CAudioModuleParam& param) const noexcept;
    [[nodiscard]] double read(const CAudioModuleParam& param, double otherwise) const noexcept;
    [[nodiscard]] CKernel chooseKernel() const noexcept;
    [[nodiscard]] CAudioBlockRef findReference() const;
    void endFrame();

    void runPlain(const double* in, const double* reference, int count);
    template <bool kUseBias>
    void runMinimum(const double* in, const double* reference, int count);
    void runRatio(const double* in, const double* reference, int count);
    void runBiasedRatio(const double* in, const double* reference, int count);
    void runLoudness(const double* in, const double* reference, int count);

    CAudioModuleParam peakTime; // times in seconds
    CAudioModuleParam rmsTime;
    CAudioModuleParam gain; // linear
    CAudioModuleParam biasTime;
    CAudioModuleParam useBias;
    CAudioModuleParam release;
    CAudioModuleParam peakGain; // linear
    CAudioModuleParam rmsTime2;
    CAudioModuleParam release2;
    CAudioModuleParam useTime2;
    CAudioModuleParam useEbu128;

    const CModMeterDef* definition = nullptr;
    CAudioVizSource* source = nullptr; // null: nobody can watch
    double preparedRate = 0.0;

    // Constant while a setting holds.
    CKernel kernel = &CModMeterModule::runPlain;
    bool isBiased = false; // the kernel uses a bias
    bool isLoudness = false;
    bool isMinimum = false; // the smallest levels are held
    int frameLength = 1;    // samples
    double rmsCoefficient = 1.0;
    double releaseCoefficient = 1.0;
    double biasCoefficient = 1.0;
    double gainFactor = 1.0;
    double peakFactor = 1.0;

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

    int interval = 1; // samples between two records
    int sendCountdown = 1;
};

} // namespace tsm
