#pragma once

#include "Tools/conform/CBusRoom.h"
#include "Tools/conform/CFindings.h"
#include "Tools/conform/SoundMath.h"
#include "Tools/hostlib/CVstCall.h"

#include <memory>

namespace tsm {

/// Sends a sound through an instance block by block, and finds what no block may do: fail, leave
/// output samples unwritten, write beyond its length or into its input. The instance must be set
/// up for this format, and outlive the run.
class CBlockRun {
public:
    CBlockRun(const CVstInstance& instance, const CVstSetUp& setUp, CFindings& findings,
              bool isInPlace = false);

    /// Of the main buses, as at the construction; 0 without such a bus.
    [[nodiscard]] int getInputCount() const { return channelCountOf(inputRooms); }
    [[nodiscard]] int getOutputCount() const { return channelCountOf(outputRooms); }

    /// Adds a point for the next call.
    void addPoint(Steinberg::Vst::ParamID id, int offset, double value);
    /// Hands the points over in a call without buses and samples.
    void flush();
    /// Processes `count` frames of the main input from frame `at` on, and appends what comes out of
    /// the main output. Drops the points.
    void process(const CChannels& in, std::size_t at, int count, CChannels& out);
    /// The whole sound in blocks of these sizes, again and again.
    void processAll(const CChannels& in, const std::vector<int>& sizes, CChannels& out);

    /// For cases that bend the data of a call: puts the input in place as process() does.
    void load(const CChannels& in, std::size_t at, int count);
    [[nodiscard]] Steinberg::Vst::ProcessData& getData() { return vstCall.getData(); }
    [[nodiscard]] CHostEvents& getInputEvents() const { return vstCall.getInputEvents(); }
    [[nodiscard]] Steinberg::Vst::ProcessContext& getContext() { return vstCall.getContext(); }
    /// Calls the plug-in with the data as they are, and drops the points.
    Steinberg::tresult call();
    /// Appends the first `count` samples of the main output's buffers.
    void collect(int count, CChannels& out) const;

private:
    using CRooms = std::vector<std::unique_ptr<CBusRoom>>;

    void addBuses(Steinberg::Vst::BusDirection dir, CRooms& rooms, CVstCall::CBuses& buses);
    [[nodiscard]] static int channelCountOf(const CRooms& rooms);
    void checkBlock(const CChannels& in, std::size_t at, int count);
    /// Finds it the first time only.
    void expectOnce(bool isTrue, bool& isKnown, const char* what, const std::string& came);

    const CVstInstance& owner;
    CVstSetUp format;
    CFindings& finder;
    bool hasOneRoom; // the main output is the main input's buffers
    CRooms inputRooms;
    CRooms outputRooms;
    CVstCall::CBuses inputs;
    CVstCall::CBuses outputs;
    CVstCall vstCall;
    std::int64_t position = 0;
    bool isFailureKnown = false;
    bool isGapKnown = false;
    bool isOverrunKnown = false;
    bool isInputWriteKnown = false;
};

} // namespace tsm
