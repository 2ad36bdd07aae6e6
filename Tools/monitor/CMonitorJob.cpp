#include "Tools/monitor/CMonitorJob.h"

#include "Audio/CAudioParamCollector.h"
#include "Audio/ProductCreators.h"
#include "Core/CAppData.h"
#include "Core/CText.h"
#include "Platform/CClock.h"
#include "Platform/CMessageQueue.h"
#include "Tools/Support/CStopSignal.h"
#include "Tools/Support/CWholeFile.h"
#include "Tools/engine/CEngineParams.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iostream>
#include <thread>

namespace tsm {
namespace {

constexpr std::size_t kMaxScriptBytes = std::size_t{1} << 20;
// How fast the measured interval between frames follows.
constexpr double kFollow = 0.15;

/// What the meters are asked for: an even number of frames a second from 2 to 100.
double evenRate(double rate)
{
    return 2.0 * std::round(std::clamp(rate, 1.0, 100.0) * 0.5);
}

} // namespace

CMonitorJob::~CMonitorJob() = default;

CError* CMonitorJob::run()
{
    TSM_TRY(readScript());
    TSM_TRY(sound.open(options.inPath));
    TSM_TRY(startEngine());
    TSM_TRY(attachClient());
    TSM_TRY(play());
    client.reset();
    wrapper->stopProcessing();
    TSM_TRY(writeReports());
    return nullptr;
}

CError* CMonitorJob::readScript()
{
    if (!options.scriptPath.empty()) {
        std::string text;
        TSM_TRY(readWholeFile(options.scriptPath, kMaxScriptBytes, text));
        TSM_TRY(script.add(text));
    }
    for (const std::string& line : options.scriptLines)
        TSM_TRY(script.add(line));
    script.sort();
    return nullptr;
}

CError* CMonitorJob::startEngine()
{
    // What a script sets may be a setting of the user's, in all sessions.
    CAppData::keepInMemory();
    TSM_TRY(startProduct(application));
    wrapper = std::make_unique<CEngineWrapper>();
    TSM_TRY(wrapper->prepare());
    const int channels = sound.getChannelCount();
    if (channels > wrapper->getIntChannelCount())
        TSM_FAIL("'%1' has %2 channels, more than the %3 that can be processed",
                 CString::fromUtf8(options.inPath), toString(channels),
                 toString(wrapper->getIntChannelCount()));
    CEngineParams params(wrapper->getParamCollector());
    for (const CNamedText& setting : options.settings)
        TSM_TRY(params.set(setting));
    block = std::make_unique<CHostBlock>(channels, options.blockSize, false);
    frames.resize(static_cast<std::size_t>(channels) * static_cast<std::size_t>(options.blockSize));
    wrapper->setFormat(sound.getRate(), channels);
    wrapper->startProcessing();
    return nullptr;
}

CError* CMonitorJob::attachClient()
{
    CMonitorClient::CEvents events;
    if (options.showMessages)
        events.onMessage = [this](bool isToBase, const std::string& message) {
            std::cout << toFixed(getSeconds(), 6).toUtf8() << (isToBase ? " > " : " < ") << message
                      << '\n';
        };
    events.onReading = [this](const CMeterReading& reading) {
        report.add(reading);
        screen.setReading(reading);
    };
    events.onSilence = [this](const std::string& meter) { screen.removeReadings(meter); };
    events.onParam = [this](const CMonitorParam& param) {
        if (isPlaying)
            screen.addChange(param.getName().toUtf8() + " = " + param.getText());
    };
    events.onHistory = [this] {
        if (client)
            screen.setHistory(client->getHistoryText());
    };
    events.onTick = [this] { return frame(); };
    client = std::make_unique<CMonitorClient>(std::move(events));
    const CEngineParams params(wrapper->getParamCollector());
    TSM_TRY(client->attach(application, wrapper->getRoot(), params.getNames(),
                           options.framesPerSecond, !options.isFast));
    return nullptr;
}

CError* CMonitorJob::play()
{
    interval = smoothInterval = 1.0 / options.framesPerSecond;
    isPlaying = true;
    CError* error = options.isFast ? playFast() : playInTime();
    isPlaying = false;
    TSM_TRY(error);
    // What the last blocks brought.
    TSM_TRY(client->requestReadings(evenRate(options.framesPerSecond)));
    TSM_TRY(client->fetch());
    screen.draw(getSeconds());
    return nullptr;
}

double CMonitorJob::getSeconds() const
{
    return static_cast<double>(position) / sound.getRate();
}

CError* CMonitorJob::processBlock()
{
    const auto count = static_cast<int>(
        std::min<std::int64_t>(options.blockSize, sound.getFrameCount() - position));
    TSM_TRY(sound.read(frames.data(), count));
    block->setInput(frames.data(), count);
    wrapper->processBlock(block->getInputs(), block->getOutputs(), count);
    position += count;
    return nullptr;
}

CError* CMonitorJob::playFast()
{
    double frameSeconds = 0.0;
    while (position < sound.getFrameCount()) {
        if (CStopSignal::getRaised() != 0)
            TSM_FAIL("stopped");
        TSM_TRY(runSteps(getSeconds()));
        TSM_TRY(processBlock());
        if (getSeconds() < frameSeconds)
            continue;
        TSM_TRY(client->requestReadings(evenRate(options.framesPerSecond)));
        TSM_TRY(client->fetch());
        screen.draw(getSeconds());
        while (frameSeconds <= getSeconds())
            frameSeconds += 1.0 / options.framesPerSecond;
    }
    return nullptr;
}

CError* CMonitorJob::playInTime()
{
    CError* failure = nullptr;
    isStopRequested = false;
    std::atomic<bool> isDone = false;
    std::thread audio([&] {
        failure = playBlocks();
        isDone = true;
    });
    while (!isDone) {
        if (CStopSignal::getRaised() != 0)
            isStopRequested = true;
        CMessageQueue::wait(10);
        CMessageQueue::dispatchPending();
    }
    audio.join();
    TSM_TRY(failure);
    return nullptr;
}

CError* CMonitorJob::playBlocks()
{
    using std::chrono::duration;
    using CSteady = std::chrono::steady_clock;
    const auto begin = CSteady::now();
    while (position < sound.getFrameCount()) {
        if (isStopRequested)
            TSM_FAIL("stopped");
        TSM_TRY(processBlock());
        std::this_thread::sleep_until(
            begin + std::chrono::duration_cast<CSteady::duration>(duration<double>(getSeconds())));
    }
    return nullptr;
}

double CMonitorJob::requestRate()
{
    const double now = CClock::seconds();
    if (lastFrameSeconds >= 0.0) {
        interval += (now - lastFrameSeconds - interval) * kFollow;
        smoothInterval += (interval - smoothInterval) * kFollow;
    }
    lastFrameSeconds = now;
    constexpr double kNoDivisionByZero = 1e-15;
    return evenRate(1.0 / (kNoDivisionByZero + smoothInterval));
}

CError* CMonitorJob::frame()
{
    // The client also ticks while it is being attached.
    if (!isPlaying)
        return nullptr;
    TSM_TRY(runSteps(getSeconds()));
    TSM_TRY(client->requestReadings(requestRate()));
    screen.draw(getSeconds());
    return nullptr;
}

CError* CMonitorJob::runSteps(double seconds)
{
    while (const CMonitorStep* step = script.takeDue(seconds))
        TSM_TRY(client->run(*step));
    return nullptr;
}

CError* CMonitorJob::writeReports()
{
    if (!options.csvPath.empty())
        TSM_TRY(writeWholeFile(options.csvPath, report.csv()));
    if (!options.plotPath.empty())
        TSM_TRY(report.plot(options.plotPath));
    return nullptr;
}

} // namespace tsm
