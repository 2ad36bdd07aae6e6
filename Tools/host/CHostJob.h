#pragma once

#include "Tools/Support/CParamTimeline.h"
#include "Tools/Support/CSoundRender.h"
#include "Tools/host/CHostOptions.h"
#include "Tools/hostlib/CHostContext.h"
#include "Tools/hostlib/CVstParams.h"
#include "Tools/hostlib/CVstProcessData.h"
#include "Tools/hostlib/CVstPrograms.h"

#include <memory>

namespace tsm {

/// One run of the program: a bundle, an instance of its effect, and what the command wants of it.
class CHostJob {
public:
    /// `wanted` is borrowed for the job's life.
    explicit CHostJob(const CHostOptions& wanted) : options(wanted), sound(wanted) {}

    /// Does what the options ask for; lists and reports go to standard output. A failure leaves no
    /// output file behind. Errors: those of files, plug-in, parameters, programs.
    [[nodiscard]] CError* run();

private:
    [[nodiscard]] CError* writeModuleInfo() const;
    [[nodiscard]] CError* createInstance();
    [[nodiscard]] CError* runRender();
    [[nodiscard]] CError* loadStates();
    [[nodiscard]] CError* loadPreset();
    [[nodiscard]] CError* chooseProgram();
    [[nodiscard]] CError* applySettings();
    [[nodiscard]] CError* readAutomations();
    [[nodiscard]] CError* render();
    [[nodiscard]] CError* process(CVstProcessData& data);
    [[nodiscard]] CError* saveState() const;
    void noteSet(const CVstParam& param);
    [[nodiscard]] std::vector<CNamedText> getTextsOfSet() const;

    /// A value that the first block begins with.
    struct CSetValue {
        const CVstParam* param;
        double value;
    };

    const CHostOptions& options;
    CSoundRender sound;
    Steinberg::IPtr<CHostContext> context = Steinberg::IPtr<CHostContext>::owned(new CHostContext);
    CVstBundle bundle;
    const CVstClass* effect = nullptr;
    CVstInstance instance; // goes before the bundle
    std::unique_ptr<CVstParams> params;
    CVstSetUp setUp;
    std::vector<CSetValue> programValues;
    std::vector<CSetValue> settings;
    std::vector<const CVstParam*> automated; // indexes of the timeline's points
    std::vector<const CVstParam*> setParams; // each once, in the order of the first mention
    CParamTimeline timeline;
};

} // namespace tsm
