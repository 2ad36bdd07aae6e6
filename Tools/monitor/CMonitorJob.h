#pragma once

#include "Core/CApplication.h"
#include "Tools/Support/CHostBlock.h"
#include "Tools/Support/CSoundFileReader.h"
#include "Tools/engine/CEngineWrapper.h"
#include "Tools/monitor/CMeterReport.h"
#include "Tools/monitor/CMonitorClient.h"
#include "Tools/monitor/CMonitorOptions.h"
#include "Tools/monitor/CMonitorScreen.h"
#include "Tools/monitor/CMonitorScript.h"

#include <atomic>
#include <memory>
#include <vector>

namespace tsm {

/// One run of the program: an instance that plays a sound on one thread, and a client of it on
/// another; or both in turn on one, where time is the sound's.
class CMonitorJob {
public:
    /// `wanted` is borrowed for the job's life.
    explicit CMonitorJob(const CMonitorOptions& wanted) : options(wanted) {}
    ~CMonitorJob();

    /// Does what the options ask for. Errors: those of files, parameters, the script, messages.
    [[nodiscard]] CError* run();

private:
    [[nodiscard]] CError* readScript();
    [[nodiscard]] CError* startEngine();
    [[nodiscard]] CError* attachClient();
    [[nodiscard]] CError* play();
    [[nodiscard]] CError* playFast();
    [[nodiscard]] CError* playInTime();
    [[nodiscard]] CError* playBlocks();
    [[nodiscard]] CError* processBlock();
    [[nodiscard]] CError* frame();
    [[nodiscard]] double requestRate();
    [[nodiscard]] CError* runSteps(double seconds);
    [[nodiscard]] double getSeconds() const;
    [[nodiscard]] CError* writeReports();

    const CMonitorOptions& options;
    CMonitorScript script;
    CSoundFileReader sound;
    CApplication application;
    std::unique_ptr<CEngineWrapper> wrapper; // goes before the application
    std::unique_ptr<CMonitorClient> client;  // goes before the instance
    std::unique_ptr<CHostBlock> block;
    std::vector<double> frames;
    std::atomic<std::int64_t> position = 0; // frames of the sound that were processed
    std::atomic<bool> isPlaying = false;
    std::atomic<bool> isStopRequested = false;
    double lastFrameSeconds = -1.0; // of the clock
    double interval = 0.0;          // smoothed, seconds
    double smoothInterval = 0.0;
    CMeterReport report;
    CMonitorScreen screen;
};

} // namespace tsm
