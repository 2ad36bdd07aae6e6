#pragma once

#include "Audio/CAudioParamFilter.h"
#include "Audio/CAudioPort.h"
#include "Audio/CAudioProcessContext.h"
#include "Audio/CParamRemapTable.h"
#include "Core/CString.h"

namespace tsm {

class CAudioGraphSteps;
class CAudioParam;
class CAudioParamDef;
class CAudioProcessDefBase;
struct CAudioParamSubscription;

/// A running process: a node of the signal graph of one plug-in instance.
///
/// In each sub-block `process` is called once, in an order in which every source comes before its
/// readers. It pulls its inputs (formats, parameters, delays, sums), does its own work, and hands
/// its output blocks on to its links. [audio] for all of it, or [setup] while no audio runs.
class CAudioProcessBase : public CCheckedObject, public CTsmMemAllocator {
public:
    CAudioProcessBase() = default;
    CAudioProcessBase(const CAudioProcessBase&) = delete;
    CAudioProcessBase& operator=(const CAudioProcessBase&) = delete;
    /// Leaves all links, subscriptions and filters.
    virtual ~CAudioProcessBase();

    /// After the process has its definition, path and parent. Errors: the definition can't run.
    [[nodiscard]] virtual CError* init();
    /// Drops all signal state, blocks on their way included; the graph and the parameters stay.
    virtual void reset();
    /// Formats (`getInputsChanged`) or parameters have changed.
    virtual void update() {}
    /// Runs one sub-block.
    virtual void process() {}
    /// Enters what there is to do in a sub-block in which nothing is brought up to date: itself, or
    /// for a container what is left of it, and its children.
    virtual void listSteps(CAudioGraphSteps& steps);
    /// Runs one such sub-block; for a container without its children, which are listed themselves.
    virtual void processSteady() { process(); }
    /// Leaves the graph: ends all links from and to this process.
    virtual void detach();
    /// Called behind the construction, before `init`.
    virtual void postCreate() {}
    /// Hands the present output format to a link that has just been made.
    virtual void publishTo(CAudioLink& link);

    /// Sets the process up as `createProcess` wants it.
    void place(const CAudioProcessDefBase& def, const CAudioProcessContext& newContext,
               CAudioProcessBase* parentProcess, const CString& path,
               const CAudioProcessPlace& where);
    /// Takes remaps, parameters, stored settings and filters from the definition; for processes
    /// that aren't elements of another at the same path. Errors: those of the filters.
    [[nodiscard]] CError* registerParams();

    /// Connects an output port of `source` (null: from outside) to an input port of `target`.
    static CAudioLink& connect(CAudioProcessBase* source, int sourcePort, CAudioProcessBase& target,
                               int targetPort);
    static void disconnect(CAudioLink& link);

    [[nodiscard]] const CString& getPath() const noexcept { return ownerPath; }
    [[nodiscard]] const CAudioProcessDefBase& getDefinition() const noexcept { return *definition; }
    [[nodiscard]] const CAudioProcessContext& getContext() const noexcept { return context; }
    [[nodiscard]] CAudioBlockPool& getPool() const noexcept { return *context.pool; }
    [[nodiscard]] CAudioEnv& getEnv() const noexcept { return *context.env; }
    [[nodiscard]] int getGroupIndex() const noexcept { return groupIndex; }
    [[nodiscard]] int getElementIndex() const noexcept { return elementIndex; }
    [[nodiscard]] bool getIsStackElement() const noexcept { return isStackElement; }
    /// The rate of the inputs in Hz; 1.0 until a signal has arrived.
    [[nodiscard]] double getSampleRate() const noexcept { return sampleRate; }
    /// Samples of delay of all inputs, at their rate.
    [[nodiscard]] int getInputLatency() const noexcept { return inputLatency; }
    /// Whether the next sub-block brings formats or parameters up to date.
    [[nodiscard]] bool needsUpdate() const noexcept
    {
        return pendingInputChanges > 0 || paramsChanged;
    }
    /// Samples of this sub-block.
    [[nodiscard]] int getBlockLength() const noexcept { return blockLength; }
    /// During `update`: the inputs' format has changed.
    [[nodiscard]] bool getInputsChanged() const noexcept { return inputsChanged; }
    /// The input port of that number, or null.
    [[nodiscard]] CAudioPort* findPort(int index) const noexcept;
    /// The same, made when it is new.
    CAudioPort& getPort(int index);

    /// The full name of the parameter that this process calls `name`: below its path, sent on by
    /// the remap tables from here up to the root.
    [[nodiscard]] CString paramName(const CString& name) const;
    /// The parameter of that name, made when it is new: described by the definition of this process
    /// or of one above it, by what stands at the same path in the shared tree, or not at all.
    [[nodiscard]] CAudioParam& findParam(const CString& name);
    /// The same through resolveName, for names with "^" and "/".
    [[nodiscard]] CAudioParam& findParamByFullName(const CString& fullName);

protected:
    /// Takes the inputs of this sub-block; calls `update` first where formats or parameters have
    /// changed. False when no samples have arrived.
    bool pull();
    /// The first half of `pull`: all of it but the blocks, which `takeInput` then takes one by one;
    /// for a process that only hands them on.
    bool beginPull();
    /// The block of a channel of an input port, once a sub-block.
    [[nodiscard]] CAudioBlockRef takeInput(CAudioPort& port, int channel)
    {
        return port.take(channel, getPool(), blockLength, inputCombo, isFilledByInput);
    }
    /// True while `update` wants to be called at each sub-block.
    [[nodiscard]] virtual bool needsUpdates() const { return false; }
    /// Called around `update` to mark or unmark all parameters.
    virtual void setAllParamsDirty(bool) {}
    /// How several sources of one input channel become one; asked when the inputs have changed.
    [[nodiscard]] virtual EInputCombo getInputCombo() const;

    /// Publishes the output format on all links of an output port.
    void publish(const CAudioFormat& format, int sourcePort = 0);
    /// The same for the channels of input port 0, at that rate in Hz and with that latency in
    /// samples of it.
    void publishChannels(double rate, int latency);
    /// Hands a block on to all links of an output port; `index` counts in the published format.
    void send(int index, CAudioBlockRef block, int length, int sourcePort = 0)
    {
        // Handed over and not copied where there is one reader, which may then write into it.
        if (CAudioLink* const link = findSoleOutLink(sourcePort))
            link->put(index, std::move(block), length);
        else
            sendToAll(index, block, length, sourcePort);
    }
    /// Hands the blocks of all channels on, in order of the published format, to all links of
    /// output port 0. They are empty afterwards.
    void sendAll(CAudioBlockRef* const* blocks, int count)
    {
        if (CAudioLink* const link = findSoleOutLink(0))
            link->putAll(blocks, count, blockLength);
        else
            for (int i = 0; i < count; ++i)
                sendToAll(i, std::exchange(*blocks[i], {}), blockLength, 0);
    }
    /// Drops the input blocks, once they have been used.
    void releaseInputs() noexcept;
    [[nodiscard]] COwnedArray<CAudioPort>& getPorts() noexcept { return ports; }
    /// The only link of all output ports, if it begins at that one; else null.
    [[nodiscard]] CAudioLink* findSoleOutLink(int sourcePort) const noexcept
    {
        const bool isSole = outLinks.getCount() == 1 && outLinks[0]->getSourcePort() == sourcePort;
        return isSole ? outLinks[0] : nullptr;
    }
    /// What subscriptions set, to have `update` called.
    [[nodiscard]] bool* getParamsChangedFlag() noexcept { return &paramsChanged; }

private:
    void sendToAll(int index, const CAudioBlockRef& block, int length, int sourcePort);
    [[nodiscard]] bool rebuildInputs();
    [[nodiscard]] int findBlockLength() const noexcept;
    void runUpdate(bool isFormatChange);
    [[nodiscard]] const CAudioParamDef* findParamDef(const CString& fullName) const;

    // What a steady sub-block reads comes first and close together, see CAudioLink.
    COwnedArray<CAudioPort> ports;
    CArray<CAudioLink*, 4> outLinks;        // owned by the ports that they end in
    const CAudioLink* firstInput = nullptr; // that has channels; known while no change is pending
    CAudioProcessContext context;
    int blockLength = 0;
    int pendingInputChanges = 1;
    EInputCombo inputCombo = EInputCombo::Sum;
    bool isFilledByInput = false; // see CAudioPort::take
    bool paramsChanged = false;

    bool inputsChanged = false;
    bool isUpdated = false; // update() has been called once
    bool isStackElement = false;
    int groupIndex = 0;
    int elementIndex = 0;
    double sampleRate = 1.0;
    int inputLatency = 0;
    const CAudioProcessDefBase* definition = nullptr;
    CAudioProcessBase* parent = nullptr;
    CString ownerPath;
    CAudioFormat outputFormat; // of output port 0
    CParamRemapTable remaps;
    COwnedArray<CAudioParamFilter> filters;
};

/// Makes the running process of a definition: a stack where the definition is stacked, else what
/// the definition's class makes. `holder` is set on success and replaces what it held.
/// Errors: those of the definition's parameters, filters and of the process's init, with the
/// definition's name. [setup|audio]
[[nodiscard]] CError* createProcess(CPtr<CAudioProcessBase>& holder,
                                    const CAudioProcessDefBase& definition,
                                    const CAudioProcessContext& context, CAudioProcessBase* parent,
                                    const CString& path, const CAudioProcessPlace& place = {});

} // namespace tsm
