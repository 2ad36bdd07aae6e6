#pragma once

#include "Core/CApplication.h"
#include "Tools/render/CHostBlock.h"
#include "Tools/render/CRenderOptions.h"
#include "Tools/render/CRenderParams.h"
#include "Tools/render/CRenderReport.h"
#include "Tools/render/CRenderWrapper.h"
#include "Tools/render/CSoundFileReader.h"
#include "Tools/render/CSoundFileWriter.h"
#include "Tools/render/CSoundLevels.h"

#include <memory>

namespace tsm {

/// One run of the program: an instance from the definition documents, a sound through it, a file.
class CRenderJob {
public:
    /// `wanted` is borrowed for the job's life.
    explicit CRenderJob(const CRenderOptions& wanted);
    ~CRenderJob();

    /// Does what the options ask for; lists and reports go to standard output. A failure leaves no
    /// output file behind. Errors: those of files, parameters, the definition.
    [[nodiscard]] CError* run();

private:
    /// A change of a parameter at a sample of the sound.
    struct CTimedValue {
        std::int64_t frame;
        int index;
        double value;
    };

    [[nodiscard]] CError* openInput();
    [[nodiscard]] CError* startEngine();
    [[nodiscard]] CError* applySettings();
    [[nodiscard]] CError* readAutomations();
    [[nodiscard]] CError* readAutomation(const CNamedText& automation);
    void startProcessing();
    [[nodiscard]] CError* render();
    [[nodiscard]] CError* renderBlock(CHostBlock& block, std::int64_t position, int count);
    [[nodiscard]] CError* readInput(std::int64_t position, int count);
    void queueEvents(std::int64_t position, int count);
    [[nodiscard]] CError* writeOutput(std::int64_t position, int count);
    void finishReport();

    const CRenderOptions& options;
    CApplication application;
    std::unique_ptr<CRenderWrapper> wrapper; // goes before the application
    std::unique_ptr<CRenderParams> params;
    CSoundFileReader input;
    CSoundFileWriter output;
    std::vector<CTimedValue> timeline; // by frame
    std::size_t nextTimed = 0;
    std::vector<double> frames; // one host block, interleaved
    std::int64_t skipFrames = 0;
    CSoundLevels inputLevels;
    CSoundLevels outputLevels;
    CRenderReport report;
};

} // namespace tsm
