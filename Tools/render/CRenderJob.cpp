#include "Tools/render/CRenderJob.h"

#include "Audio/ProductCreators.h"
#include "Core/CText.h"
#include "Tools/render/CAutomationText.h"
#include "Tools/render/CProgressBar.h"
#include "Tools/render/CStopSignal.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iostream>

#include <sys/stat.h>

namespace tsm {

namespace {

constexpr int kMinRate = 8000;
constexpr int kMaxRate = 768000;
/// The rate of the passes that build the graph. It is no file's: the start at the rate of the file
/// then makes every module anew, with the values that were set, so that nothing fades in.
constexpr double kSetUpRate = 4000.0;
static_assert(kSetUpRate < kMinRate);

bool isSameFile(const std::string& a, const std::string& b)
{
    struct stat first = {};
    struct stat second = {};
    return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

} // namespace

CRenderJob::CRenderJob(const CRenderOptions& wanted) : options(wanted) {}

CRenderJob::~CRenderJob() = default;

CError* CRenderJob::run()
{
    if (!options.isList)
        TSM_TRY(openInput());
    TSM_TRY(startEngine());
    TSM_TRY(applySettings());
    TSM_TRY(readAutomations());
    if (options.isList) {
        std::cout << params->list();
        return nullptr;
    }
    startProcessing();
    TSM_TRY(render());
    finishReport();
    return nullptr;
}

CError* CRenderJob::openInput()
{
    TSM_TRY(input.open(options.inPath));
    const CString name = CString::fromUtf8(options.inPath);
    if (input.getRate() < kMinRate || input.getRate() > kMaxRate)
        TSM_FAIL("'%1' has a sample rate of %2 Hz, outside of %3 to %4", name,
                 toString(input.getRate()), toString(kMinRate), toString(kMaxRate));
    if (isSameFile(options.inPath, options.outPath))
        TSM_FAIL("input and output are the same file '%1'", name);
    return nullptr;
}

CError* CRenderJob::startEngine()
{
    TSM_TRY(startProduct(application));
    wrapper = std::make_unique<CRenderWrapper>();
    TSM_TRY(wrapper->init());
    wrapper->setSampleRate(kSetUpRate);
    wrapper->afterInit();
    params = std::make_unique<CRenderParams>(wrapper->getParamCollector());
    if (options.isList)
        return nullptr;
    if (input.getChannelCount() > wrapper->getIntChannelCount())
        TSM_FAIL("'%1' has %2 channels, more than the %3 that can be processed",
                 CString::fromUtf8(options.inPath), toString(input.getChannelCount()),
                 toString(wrapper->getIntChannelCount()));
    return nullptr;
}

CError* CRenderJob::applySettings()
{
    for (const CNamedText& setting : options.settings)
        TSM_TRY(params->set(setting));
    return nullptr;
}

CError* CRenderJob::readAutomations()
{
    for (const CNamedText& automation : options.automations)
        TSM_TRY(readAutomation(automation));
    std::stable_sort(timeline.begin(), timeline.end(),
                     [](const CTimedValue& a, const CTimedValue& b) { return a.frame < b.frame; });
    wrapper->reserveEvents(static_cast<int>(timeline.size()));
    return nullptr;
}

CError* CRenderJob::readAutomation(const CNamedText& automation)
{
    CAudioParam* param = nullptr;
    TSM_TRY(params->findNumeric(param, automation.name));
    std::vector<CAutomationPoint> points;
    TSM_TRY(parseAutomationText(automation.text, points));
    const int index = wrapper->addEventParam(*param);
    for (const CAutomationPoint& point : points) {
        double value = 0.0;
        TSM_TRY(params->parse(value, *param, automation.name, point.text));
        // Beyond 2^53 samples a point never comes, whatever its exact place.
        const double frame = std::min(std::round(point.seconds * input.getRate()), 0x1p53);
        timeline.push_back({static_cast<std::int64_t>(frame), index, value});
    }
    return nullptr;
}

void CRenderJob::startProcessing()
{
    const int channels = input.getChannelCount();
    wrapper->setSampleRate(input.getRate());
    wrapper->setChannelFormat({channels, !options.useFloatHost, false}, {});
    wrapper->setOutputFormat({channels, !options.useFloatHost, false});
    wrapper->setOffline(options.isOffline);
    wrapper->startProcessing();

    report.rate = input.getRate();
    report.channels = channels;
    report.frames = input.getFrameCount();
    report.block = options.blockSize;
    report.latency = wrapper->queryLatency();
    report.tail = wrapper->getTailSamples();
    report.outputFrames = report.frames + (options.isRaw ? 0 : report.tail);
    skipFrames = options.isRaw ? 0 : report.latency;
}

CError* CRenderJob::render()
{
    TSM_TRY(output.create(options.outPath, report.rate, report.channels, report.outputFrames,
                          options.format));
    const auto begin = std::chrono::steady_clock::now();
    CHostBlock block(report.channels, options.blockSize, options.useFloatHost);
    frames.resize(static_cast<std::size_t>(options.blockSize) *
                  static_cast<std::size_t>(report.channels));
    const std::int64_t total = skipFrames + report.outputFrames;
    CProgressBar progress(total);
    for (std::int64_t position = 0; position < total; position += options.blockSize) {
        if (CStopSignal::getRaised() != 0)
            TSM_FAIL("stopped");
        const auto count =
            static_cast<int>(std::min<std::int64_t>(options.blockSize, total - position));
        TSM_TRY(renderBlock(block, position, count));
        progress.update(position + count);
    }
    wrapper->stopProcessing();
    TSM_TRY(output.commit());
    report.elapsedSeconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    return nullptr;
}

CError* CRenderJob::renderBlock(CHostBlock& block, std::int64_t position, int count)
{
    TSM_TRY(readInput(position, count));
    block.setInput(frames.data(), count);
    queueEvents(position, count);
    wrapper->processBlock(block.getInputs(), block.getOutputs(), count);
    block.getOutput(frames.data(), count);
    return writeOutput(position, count);
}

CError* CRenderJob::readInput(std::int64_t position, int count)
{
    const auto channels = static_cast<std::size_t>(report.channels);
    const auto present =
        static_cast<int>(std::clamp<std::int64_t>(report.frames - position, 0, count));
    if (present > 0)
        TSM_TRY(input.read(frames.data(), present));
    inputLevels.add(frames.data(), present * report.channels);
    // Behind its end the sound goes on with silence, which brings out the tail.
    std::fill(frames.begin() +
                  static_cast<std::ptrdiff_t>(static_cast<std::size_t>(present) * channels),
              frames.end(), 0.0);
    return nullptr;
}

void CRenderJob::queueEvents(std::int64_t position, int count)
{
    for (; nextTimed < timeline.size() && timeline[nextTimed].frame < position + count;
         ++nextTimed) {
        const CTimedValue& timed = timeline[nextTimed];
        wrapper->queueParamEvent(static_cast<std::uint32_t>(timed.frame - position), timed.index,
                                 timed.value);
    }
}

CError* CRenderJob::writeOutput(std::int64_t position, int count)
{
    const auto skipped =
        static_cast<int>(std::clamp<std::int64_t>(skipFrames - position, 0, count));
    if (skipped == count)
        return nullptr;
    const double* first = frames.data() + static_cast<std::ptrdiff_t>(skipped) * report.channels;
    outputLevels.add(first, (count - skipped) * report.channels);
    return output.write(first, count - skipped);
}

void CRenderJob::finishReport()
{
    report.inputPeak = inputLevels.getPeak();
    report.inputRms = inputLevels.getRms();
    report.outputPeak = outputLevels.getPeak();
    report.outputRms = outputLevels.getRms();
    report.clipped = output.getClippedCount();
    report.parameters = params->getTextsOfSet();
    if (report.clipped > 0)
        std::cerr << "reelpath-render: " << report.clipped << " samples were clipped\n";
    if (options.isJson)
        std::cout << report.toJson();
}

} // namespace tsm
