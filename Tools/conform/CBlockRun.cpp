#include "Tools/conform/CBlockRun.h"

#include <algorithm>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

CBlockRun::CBlockRun(const CVstInstance& instance, const CVstSetUp& setUp, CFindings& findings,
                     bool isInPlace)
    : owner(instance), format(setUp), finder(findings), hasOneRoom(isInPlace),
      vstCall(instance, setUp)
{
    addBuses(kInput, inputRooms, inputs);
    addBuses(kOutput, outputRooms, outputs);
    // Only buses of as many channels can share their buffers.
    hasOneRoom = hasOneRoom && getInputCount() > 0 && getInputCount() == getOutputCount();
    if (hasOneRoom)
        outputs[0] = inputs[0];
    vstCall.setBuses(inputs, outputs);
}

void CBlockRun::addBuses(BusDirection dir, CRooms& rooms, CVstCall::CBuses& buses)
{
    constexpr int32 kMaxBuses = 256;
    constexpr int32 kMaxChannels = 64;
    IComponent& component = owner.getComponent();
    const int32 count = std::clamp(component.getBusCount(kAudio, dir), 0, kMaxBuses);
    for (int32 i = 0; i < count; ++i) {
        BusInfo info = {};
        component.getBusInfo(kAudio, dir, i, info);
        rooms.push_back(std::make_unique<CBusRoom>(std::clamp(info.channelCount, 0, kMaxChannels),
                                                   format.maxBlock, format.isDouble));
        buses.push_back(rooms.back()->describe());
    }
}

int CBlockRun::channelCountOf(const CRooms& rooms)
{
    return rooms.empty() ? 0 : rooms[0]->getChannelCount();
}

void CBlockRun::addPoint(ParamID id, int offset, double value)
{
    vstCall.addPoint(id, offset, value);
}

void CBlockRun::flush()
{
    ProcessData& data = vstCall.getData();
    const ProcessData whole = data;
    data.numSamples = data.numInputs = data.numOutputs = 0;
    data.inputs = data.outputs = nullptr;
    const tresult result = call();
    data = whole;
    expectOnce(result == kResultOk, isFailureKnown,
               "process() without buses and samples, which hands over parameters gives kResultOk",
               resultText(result));
}

void CBlockRun::load(const CChannels& in, std::size_t at, int count)
{
    for (std::size_t bus = 0; bus < inputRooms.size(); ++bus) {
        inputRooms[bus]->mark();
        inputRooms[bus]->silence(count);
        // Side chains stay silent, and say so.
        inputs[bus].silenceFlags = bus == 0 ? 0 : (uint64{1} << inputs[bus].numChannels) - 1;
    }
    for (int channel = 0; channel < getInputCount(); ++channel)
        inputRooms[0]->write(channel, in[static_cast<std::size_t>(channel)].data() + at, count);
    for (const auto& room : outputRooms)
        room->mark();
    for (AudioBusBuffers& bus : outputs)
        bus.silenceFlags = 0;
    vstCall.getData().numSamples = count;
    vstCall.setPosition(position);
}

tresult CBlockRun::call()
{
    const tresult result = vstCall.run();
    position += vstCall.getData().numSamples;
    return result;
}

void CBlockRun::process(const CChannels& in, std::size_t at, int count, CChannels& out)
{
    load(in, at, count);
    const tresult result = call();
    expectOnce(result == kResultOk, isFailureKnown,
               "process() of an ordinary block gives kResultOk", resultText(result));
    checkBlock(in, at, count);
    collect(count, out);
}

void CBlockRun::collect(int count, CChannels& out) const
{
    out.resize(static_cast<std::size_t>(getOutputCount()));
    const CBusRoom& source = hasOneRoom ? *inputRooms[0] : *outputRooms[0];
    for (int channel = 0; channel < getOutputCount(); ++channel) {
        std::vector<double>& samples = out[static_cast<std::size_t>(channel)];
        const std::size_t before = samples.size();
        samples.resize(before + static_cast<std::size_t>(count));
        source.read(channel, samples.data() + before, count);
    }
}

void CBlockRun::processAll(const CChannels& in, const std::vector<int>& sizes, CChannels& out)
{
    const std::size_t whole = frameCountOf(in);
    std::size_t next = 0;
    for (std::size_t at = 0; at < whole;) {
        const auto left = static_cast<int>(std::min<std::size_t>(whole - at, 1 << 30));
        const int count = std::min(sizes[next++ % sizes.size()], left);
        process(in, at, count, out);
        at += static_cast<std::size_t>(count);
    }
}

void CBlockRun::checkBlock(const CChannels& in, std::size_t at, int count)
{
    const std::string came = "another, in a block of " + std::to_string(count) +
                             (format.isDouble ? " doubles" : " floats");
    bool isGuarded = true;
    bool isInputKept = true;
    bool isWritten = true;
    for (const auto& room : inputRooms)
        isGuarded = isGuarded && room->isGuarded(count);
    for (std::size_t bus = 0; bus < outputRooms.size(); ++bus) {
        isGuarded = isGuarded && outputRooms[bus]->isGuarded(count);
        const bool isElsewhere = hasOneRoom && bus == 0;
        isWritten = isWritten && (isElsewhere || !outputRooms[bus]->hasMark(count));
    }
    for (int channel = 0; channel < getInputCount() && !hasOneRoom; ++channel)
        isInputKept =
            isInputKept &&
            inputRooms[0]->holds(channel, in[static_cast<std::size_t>(channel)].data() + at, count);
    expectOnce(isGuarded, isOverrunKnown, "nothing is written beyond a block's samples", came);
    expectOnce(isWritten, isGapKnown, "all samples of the outputs are written", came);
    expectOnce(isInputKept, isInputWriteKnown, "nothing is written into the input's buffers", came);
}

void CBlockRun::expectOnce(bool isTrue, bool& isKnown, const char* what, const std::string& came)
{
    if (!isTrue && !isKnown)
        finder.fail("blocks of process()", what, came);
    isKnown = isKnown || !isTrue;
}

} // namespace tsm
