#pragma once

#include "Audio/CAudioModule.h"
#include "Audio/CAudioVizDataMeter.h"
#include "Audio/Processes/CLevelMeter.h"
#include "Core/CPtr.h"

namespace tsm {

class CAudioVizSource;
class CModMeterDef;

/// The level of one channel (`CLevelMeter`), sent to the windows as records at a frame rate of its
/// own or at theirs.
class CModMeterModule : public CAudioModule {
public:
    void init() override;
    void reset() override;
    void update() override;
    void registerParams() override;

    /// Takes times and switches from the parameters, and starts the levels again. [audio]
    /// Allocates from the block allocator when a window grows.
    virtual void recalculate();
    /// Measures samples of the present sub-block. [audio]
    virtual void processBlock(int first, int count);
    /// A record of the levels, linear; place and time are the caller's to fill in. [audio]
    /// Allocates from the block allocator.
    [[nodiscard]] virtual CPtr<CAudioVizDataMeter> makeData();

    /// Channels that are in step are measured together. [audio]
    static void processModules(CAudioModule* const* modules, int count);

private:
    static void processTogether(CModMeterModule* const* modules, int count);
    static void measure(CModMeterModule* const* modules, int moduleCount, int first, int count);
    [[nodiscard]] bool isInStepWith(const CModMeterModule& other) const noexcept;
    [[nodiscard]] CAudioBlockRef findReference() const;
    void send(double time, double windowRate);

    void restartInterval();
    void follow(double windowRate) noexcept;
    [[nodiscard]] double readWindowRate() const;
    [[nodiscard]] bool areSettingsChanged() const noexcept;
    [[nodiscard]] EMeterKind chooseKind() const noexcept;
    [[nodiscard]] bool isOn(const CAudioModuleParam& param) const noexcept;
    [[nodiscard]] double read(const CAudioModuleParam& param, double otherwise) const noexcept;

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
    CLevelMeter meter;
    double gainFactor = 1.0;
    double peakFactor = 1.0;
    double preparedRate = 0.0;
    int interval = 1; // samples between two records
    int sendCountdown = 1;
};

} // namespace tsm
