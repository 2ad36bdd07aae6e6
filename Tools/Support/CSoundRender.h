#pragma once

#include "Tools/Support/CSoundFileReader.h"
#include "Tools/Support/CSoundFileWriter.h"
#include "Tools/Support/CSoundLevels.h"
#include "Tools/Support/CSoundOptions.h"
#include "Tools/Support/CSoundReport.h"

#include <functional>
#include <vector>

namespace tsm {

/// Sends a sound file block by block through something and writes what comes out, aligned by its
/// latency and with its tail, unless the raw samples are asked for.
class CSoundRender {
public:
    static constexpr int kMinRate = 8000;
    static constexpr int kMaxRate = 768000;

    /// Turns `count` interleaved frames, the first of which is frame `position` of the run, into
    /// what comes out.
    using ProcessFunction =
        std::function<CError*(double* frames, std::int64_t position, int count)>;

    /// `wanted` is borrowed for the object's life.
    explicit CSoundRender(const CSoundOptions& wanted) : options(wanted) {}

    /// Errors: the file can't be read, its rate is out of range, it is the output too.
    [[nodiscard]] CError* openInput();
    [[nodiscard]] int getRate() const { return input.getRate(); }
    [[nodiscard]] int getChannelCount() const { return input.getChannelCount(); }
    /// Errors: more channels than this.
    [[nodiscard]] CError* checkChannels(int most) const;

    /// Does the work; a failure leaves no output file behind. Latency and tail are in samples.
    /// Errors: those of files and of `process`, a signal that ends the program.
    [[nodiscard]] CError* run(int latency, std::int64_t tail, const ProcessFunction& process);
    /// Tells of clipped samples, and writes the report to standard output when it is asked for.
    void report(const char* tool, const std::vector<CNamedText>& parameters);

private:
    [[nodiscard]] CError* renderBlock(std::int64_t position, int count,
                                      const ProcessFunction& process);
    [[nodiscard]] CError* readInput(std::int64_t position, int count);
    [[nodiscard]] CError* writeOutput(std::int64_t position, int count);

    const CSoundOptions& options;
    CSoundFileReader input;
    CSoundFileWriter output;
    std::vector<double> frames; // one host block, interleaved
    std::int64_t skipFrames = 0;
    CSoundLevels inputLevels;
    CSoundLevels outputLevels;
    CSoundReport facts;
};

} // namespace tsm
