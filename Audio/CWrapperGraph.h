#pragma once

#include "Audio/CAudioBlockPool.h"
#include "Audio/CAudioGraphSteps.h"
#include "Audio/CAudioProcessBase.h"
#include "Audio/CHostBuffers.h"
#include "Core/CObject.h"

namespace tsm {

class CAudioEnv;
class CAudioVizCollector;
class CModOutput;

/// The live graph of one instance, from the samples that come in to those that go out: the main
/// process and the output process behind it, with their work space. [audio] but for create() and
/// destroy().
class CWrapperGraph : public CCheckedObject {
public:
    CWrapperGraph() = default;
    CWrapperGraph(const CWrapperGraph&) = delete;
    CWrapperGraph& operator=(const CWrapperGraph&) = delete;
    ~CWrapperGraph() { destroy(); }

    /// Makes both processes from their definitions in the shared tree, seen from `finder`, and
    /// links them. The environment and the collectors are borrowed. Errors: a missing definition,
    /// those of the processes, an output process of another class. [setup]
    [[nodiscard]] CError* create(CObject& finder, CAudioEnv& env, CAudioParamCollector& collector,
                                 CAudioVizCollector& vizCollector);
    /// Ends the processes. [setup]
    void destroy();

    /// Tells the graph what comes in: `channelCount` channels (16 at most) of group 0.
    void publishInput(int channelCount, double sampleRate);
    /// The samples of an input channel for this sub-block, `length` of them, to be written.
    [[nodiscard]] double* beginInput(int channel, int length);
    /// Lets the sub-block pass. The output stays until release().
    void run();
    /// Whether all samples that came out are finite in the host's format.
    [[nodiscard]] bool isOutputUsable(const CHostOutput& host) const;
    /// Writes what came out to the host, from its frame `first` on; what is missing of `length`
    /// samples is silence.
    void writeOutput(const CHostOutput& host, int first, int length) const;
    void release();
    /// Drops all signal state; parameters and wiring stay.
    void reset();

private:
    [[nodiscard]] CError* createFrom(CPtr<CAudioProcessBase>& process, CObject& finder,
                                     const char* definitionName, const char* instanceName);
    [[nodiscard]] const CAudioPort* findOutput() const;

    CAudioBlockPool pool;
    CAudioProcessContext context;
    CPtr<CAudioProcessBase> mainProcess;
    CPtr<CAudioProcessBase> outputProcess;
    CAudioGraphSteps steps;             // of the main process
    CModOutput* outputModule = nullptr; // the output process
    CAudioLink* inputLink = nullptr;    // into port 0 of the main process, which owns it
};

} // namespace tsm
