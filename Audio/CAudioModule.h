#pragma once

#include "Audio/CAudioChannel.h"
#include "Audio/CAudioParamStorage.h"
#include "Core/CArray.h"

namespace tsm {

class CAudioBlockPool;
class CAudioEnv;
class CAudioProcessTerminalBase;

/// One parameter as a module sees it.
class CAudioModuleParam {
public:
    /// The value at a place; `otherwise` when the document gives the module no such parameter, or
    /// it has no values.
    [[nodiscard]] double value(int group, int element, double otherwise = 0.0) const noexcept
    {
        return values ? values->value(group, element, otherwise) : otherwise;
    }
    /// All values; null when the parameter is missing.
    [[nodiscard]] const CAudioParamStorage* getValues() const noexcept { return values; }
    /// True when it changed since the last update.
    [[nodiscard]] bool isChanged() const noexcept { return changed; }

private:
    friend class CAudioModule;
    friend class CAudioProcessTerminalBase;
    const CAudioParamStorage* values = nullptr; // the process side
    bool changed = false;
};

/// One output channel of a module.
struct CAudioModuleOutput : CAudioChannelFormat {
    CAudioBlockRef buffer;
};

/// The signal code of one channel of a terminal process (of all channels, in a whole one), and its
/// state.
///
/// A module is made by its terminal, told of its parameters (`registerParams`), its channels and
/// rate (`init`), then of each change (`update`). It isn't asked to smooth: where a change would
/// click, the terminal makes a fresh module and crossfades to it. [audio]
///
/// A module class M also has
/// `static void processModules(CAudioModule* const* modules, int count)`: all modules of the
/// process, all of class M, in one call, so that channels may share work; or else a plain
/// `processBlock()`. It fills each module's outputs.
class CAudioModule : public CCheckedObject, public CTsmMemAllocator {
public:
    CAudioModule() = default;
    CAudioModule(const CAudioModule&) = delete;
    CAudioModule& operator=(const CAudioModule&) = delete;
    virtual ~CAudioModule() = default;

    /// Channels and sample rate stand; before the first `update`.
    virtual void init() {}
    /// Drops the signal state.
    virtual void reset() {}
    /// Reads the parameters and recomputes. A module that delays says so by `setLatency`.
    virtual void update() {}
    /// Names the module's parameters, in order of their index, by `registerParam`. Called once.
    virtual void registerParams() {}

    [[nodiscard]] CAudioProcessTerminalBase& getProcess() const noexcept { return *process; }
    [[nodiscard]] CAudioEnv& getEnv() const noexcept;
    [[nodiscard]] CAudioBlockPool& getPool() const noexcept;
    /// The group and element that the module reads its parameters of.
    [[nodiscard]] int getGroupIndex() const noexcept { return groupIndex; }
    [[nodiscard]] int getElementIndex() const noexcept { return elementIndex; }
    /// The channel slot that the module serves.
    [[nodiscard]] int getChannelIndex() const noexcept { return channelIndex; }
    [[nodiscard]] int getBlockLength() const noexcept { return blockLength; }
    /// Latency of the inputs in samples.
    [[nodiscard]] int getInputLatency() const noexcept { return inputLatency; }
    /// Rate of the inputs in Hz.
    [[nodiscard]] double getSampleRate() const noexcept { return sampleRate; }

    [[nodiscard]] int getInputCount() const noexcept { return inputs.getCount(); }
    /// The block of an input channel in this sub-block.
    [[nodiscard]] const CAudioBlockRef& getInput(int index = 0) const noexcept
    {
        return inputs[index]->buffer;
    }
    [[nodiscard]] int getOutputCount() const noexcept { return outputCount; }
    [[nodiscard]] CAudioModuleOutput& getOutput(int index = 0) noexcept { return outputs[index]; }

protected:
    /// Ties `param` to the slot of that index. A slot that the document doesn't have is logged and
    /// leaves the parameter unset.
    void registerParam(int index, CAudioModuleParam& param);
    /// Tells what the module adds to the latency of its inputs, on all outputs, in samples. For
    /// `update` only.
    void setLatency(int samples) noexcept;

private:
    friend class CAudioProcessTerminalBase;

    // What a steady sub-block reads comes close together, see CAudioLink.
    CArray<CAudioModuleParam*> params; // by index; null where the class has none
    int groupIndex = 0;
    int channelIndex = 0;
    int elementIndex = 0;
    int inputLatency = 0;
    double sampleRate = 1.0;
    bool anyParamDirty = false;
    CAudioProcessTerminalBase* process = nullptr;
    int blockLength = 0;
    int outputCount = 0;
    CArray<const CAudioChannel*, 2> inputs;
    CAudioModuleOutput outputs[kMaxPortChannels];
};

} // namespace tsm
