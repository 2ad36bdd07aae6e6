#pragma once

#include "Core/CApplication.h"
#include "Tools/Support/CHostBlock.h"
#include "Tools/Support/CParamTimeline.h"
#include "Tools/Support/CSoundRender.h"
#include "Tools/engine/CEngineParams.h"
#include "Tools/engine/CEngineWrapper.h"
#include "Tools/render/CRenderOptions.h"

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
    [[nodiscard]] CError* startEngine();
    [[nodiscard]] CError* loadState();
    [[nodiscard]] CError* chooseProgram();
    [[nodiscard]] CError* chooseImpulse();
    [[nodiscard]] CError* saveState();
    [[nodiscard]] CError* applySettings();
    [[nodiscard]] CError* readAutomations();
    [[nodiscard]] CError* readAutomation(const CNamedText& automation);
    void startProcessing();
    [[nodiscard]] CError* render();

    const CRenderOptions& options;
    CSoundRender sound;
    CApplication application;
    std::unique_ptr<CEngineWrapper> wrapper; // goes before the application
    std::unique_ptr<CEngineParams> params;
    CParamTimeline timeline;
};

} // namespace tsm
