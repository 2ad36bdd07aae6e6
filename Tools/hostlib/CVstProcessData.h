#pragma once

#include "Tools/Support/CHostBlock.h"
#include "Tools/hostlib/CVstCall.h"

#include <memory>
#include <vector>

namespace tsm {

/// The data of a plug-in's process call: buffers for every bus, parameter changes, events, and a
/// transport that plays at 120 beats a minute.
class CVstProcessData {
public:
    /// For an instance that is set up so; the main buses have equally many channels.
    CVstProcessData(const CVstInstance& instance, const CVstSetUp& setUp);

    /// Adds a point for the next call. [audio]
    void addPoint(Steinberg::Vst::ParamID id, int offset, double value);
    /// Processes interleaved frames of the main buses in place, and drops the points.
    /// `position` is that of the first frame. Errors: the plug-in refuses. [audio]
    [[nodiscard]] CError* process(double* frames, std::int64_t position, int count);
    /// Hands the points over in a call without samples. Errors: as above. [audio]
    [[nodiscard]] CError* flush();

private:
    /// The channels of one bus as the interface wants them.
    struct CBusRoom {
        std::unique_ptr<CHostBlock> block; // null for the main output, which shares the input's
        std::vector<Steinberg::Vst::Sample32*> floats;
        std::vector<Steinberg::Vst::Sample64*> doubles;
    };

    void addBuses(Steinberg::Vst::BusDirection dir, std::vector<CBusRoom>& rooms,
                  CVstCall::CBuses& buffers);
    void point(CBusRoom& room, const CHostBlock& block, Steinberg::Vst::BusDirection dir,
               int channelCount, Steinberg::Vst::AudioBusBuffers& buffers) const;
    [[nodiscard]] CError* call();

    const CVstInstance& owner;
    CVstSetUp format;
    std::vector<CBusRoom> inputRooms;
    std::vector<CBusRoom> outputRooms;
    CVstCall::CBuses inputs;
    CVstCall::CBuses outputs;
    CVstCall vstCall;
};

} // namespace tsm
