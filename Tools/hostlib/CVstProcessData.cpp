#include "Tools/hostlib/CVstProcessData.h"

#include "Core/CText.h"

#include <algorithm>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

CVstProcessData::CVstProcessData(const CVstInstance& instance, const CVstSetUp& setUp)
    : owner(instance), format(setUp), vstCall(instance, setUp)
{
    addBuses(kInput, inputRooms, inputs);
    addBuses(kOutput, outputRooms, outputs);
    vstCall.setBuses(inputs, outputs);
}

void CVstProcessData::addBuses(BusDirection dir, std::vector<CBusRoom>& rooms,
                               CVstCall::CBuses& buffers)
{
    constexpr int32 kMaxBuses = 256;
    constexpr int32 kMaxChannels = 64; // as many as an arrangement has bits
    const int32 count = std::clamp(owner.getComponent().getBusCount(kAudio, dir), 0, kMaxBuses);
    rooms.resize(static_cast<std::size_t>(count));
    buffers.resize(static_cast<std::size_t>(count));
    for (int32 i = 0; i < count; ++i) {
        BusInfo info = {};
        owner.getComponent().getBusInfo(kAudio, dir, i, info);
        const int channelCount = std::clamp(info.channelCount, 0, kMaxChannels);
        CBusRoom& room = rooms[static_cast<std::size_t>(i)];
        const bool isMainOutput = dir == kOutput && i == 0 && !inputRooms.empty();
        if (!isMainOutput)
            room.block =
                std::make_unique<CHostBlock>(channelCount, format.maxBlock, !format.isDouble);
        point(room, isMainOutput ? *inputRooms[0].block : *room.block, dir, channelCount,
              buffers[static_cast<std::size_t>(i)]);
    }
}

void CVstProcessData::point(CBusRoom& room, const CHostBlock& block, BusDirection dir,
                            int channelCount, AudioBusBuffers& buffers) const
{
    for (int channel = 0; channel < channelCount; ++channel) {
        // The interface has no const; plug-ins may not write inputs.
        void* const samples = dir == kInput ? const_cast<void*>(block.getInputs()[channel])
                                            : block.getOutputs()[channel];
        if (format.isDouble)
            room.doubles.push_back(static_cast<Sample64*>(samples));
        else
            room.floats.push_back(static_cast<Sample32*>(samples));
    }
    buffers.numChannels = channelCount;
    if (format.isDouble)
        buffers.channelBuffers64 = room.doubles.data();
    else
        buffers.channelBuffers32 = room.floats.data();
}

void CVstProcessData::addPoint(ParamID id, int offset, double value)
{
    vstCall.addPoint(id, offset, value);
}

CError* CVstProcessData::process(double* frames, std::int64_t position, int count)
{
    CHostBlock* const block = inputRooms.empty() ? nullptr : inputRooms[0].block.get();
    if (!block || outputRooms.empty())
        TSM_FAIL("the plug-in has no main input or no main output");
    block->setInput(frames, count);
    vstCall.getData().numSamples = count;
    vstCall.setPosition(position);
    TSM_TRY(call());
    block->getOutput(frames, count);
    return nullptr;
}

CError* CVstProcessData::flush()
{
    vstCall.getData().numSamples = 0;
    return call();
}

CError* CVstProcessData::call()
{
    for (AudioBusBuffers& bus : outputs)
        bus.silenceFlags = 0;
    const tresult result = vstCall.run();
    if (result != kResultOk)
        TSM_FAIL("the plug-in failed to process a block (result %1)", toString(result));
    return nullptr;
}

} // namespace tsm
