#include "Tools/Support/CSoundRender.h"

#include "Core/CText.h"
#include "Tools/Support/CProgressBar.h"
#include "Tools/Support/CStopSignal.h"

#include <algorithm>
#include <chrono>
#include <iostream>

#include <sys/stat.h>

namespace tsm {

namespace {

bool isSameFile(const std::string& a, const std::string& b)
{
    struct stat first = {};
    struct stat second = {};
    return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

} // namespace

CError* CSoundRender::openInput()
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

CError* CSoundRender::checkChannels(int most) const
{
    if (input.getChannelCount() > most)
        TSM_FAIL("'%1' has %2 channels, more than the %3 that can be processed",
                 CString::fromUtf8(options.inPath), toString(input.getChannelCount()),
                 toString(most));
    return nullptr;
}

CError* CSoundRender::run(int latency, std::int64_t tail, const ProcessFunction& process)
{
    facts.rate = input.getRate();
    facts.channels = input.getChannelCount();
    facts.frames = input.getFrameCount();
    facts.block = options.blockSize;
    facts.latency = latency;
    facts.tail = tail;
    facts.outputFrames = facts.frames + (options.isRaw ? 0 : tail);
    skipFrames = options.isRaw ? 0 : latency;
    TSM_TRY(output.create(options.outPath, facts.rate, facts.channels, facts.outputFrames,
                          options.format));
    const auto begin = std::chrono::steady_clock::now();
    frames.resize(static_cast<std::size_t>(options.blockSize) *
                  static_cast<std::size_t>(facts.channels));
    const std::int64_t total = skipFrames + facts.outputFrames;
    CProgressBar progress(total);
    for (std::int64_t position = 0; position < total; position += options.blockSize) {
        if (CStopSignal::getRaised() != 0)
            TSM_FAIL("stopped");
        const auto count =
            static_cast<int>(std::min<std::int64_t>(options.blockSize, total - position));
        TSM_TRY(renderBlock(position, count, process));
        progress.update(position + count);
    }
    TSM_TRY(output.commit());
    facts.elapsedSeconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    return nullptr;
}

CError* CSoundRender::renderBlock(std::int64_t position, int count, const ProcessFunction& process)
{
    TSM_TRY(readInput(position, count));
    TSM_TRY(process(frames.data(), position, count));
    return writeOutput(position, count);
}

CError* CSoundRender::readInput(std::int64_t position, int count)
{
    const auto channels = static_cast<std::size_t>(facts.channels);
    const auto present =
        static_cast<int>(std::clamp<std::int64_t>(facts.frames - position, 0, count));
    if (present > 0)
        TSM_TRY(input.read(frames.data(), present));
    inputLevels.add(frames.data(), present * facts.channels);
    // Behind its end the sound goes on with silence, which brings out the tail.
    std::fill(frames.begin() +
                  static_cast<std::ptrdiff_t>(static_cast<std::size_t>(present) * channels),
              frames.end(), 0.0);
    return nullptr;
}

CError* CSoundRender::writeOutput(std::int64_t position, int count)
{
    const auto skipped =
        static_cast<int>(std::clamp<std::int64_t>(skipFrames - position, 0, count));
    if (skipped == count)
        return nullptr;
    const double* first = frames.data() + static_cast<std::ptrdiff_t>(skipped) * facts.channels;
    outputLevels.add(first, static_cast<std::int64_t>(count - skipped) * facts.channels);
    return output.write(first, count - skipped);
}

void CSoundRender::report(const char* tool, const std::vector<CNamedText>& parameters)
{
    facts.inputPeak = inputLevels.getPeak();
    facts.inputRms = inputLevels.getRms();
    facts.outputPeak = outputLevels.getPeak();
    facts.outputRms = outputLevels.getRms();
    facts.clipped = output.getClippedCount();
    facts.parameters = parameters;
    if (facts.clipped > 0)
        std::cerr << tool << ": " << facts.clipped << " samples were clipped\n";
    if (options.isJson)
        std::cout << facts.toJson();
}

} // namespace tsm
