#include "Audio/CAudioProcess.h"

#include "Audio/CAudioParam.h"
#include "Audio/CAudioProcessBypassStateDef.h"
#include "Audio/CParamName.h"
#include "Core/CLog.h"

namespace tsm {

CAudioProcess::~CAudioProcess()
{
    CAudioProcessContainer::detach();
}

CError* CAudioProcess::init()
{
    TSM_TRY(CAudioProcessContainer::init());
    const auto& def = static_cast<const CAudioProcessDef&>(getDefinition());
    graph.reset(new CAudioGraph(def));
    for (const CAudioProcessBypassStateDef* stateDef : def.getBypassStates()) {
        CBypassState& state = bypassStates.create();
        state.def = stateDef;
        watch(state);
    }
    return nullptr;
}

// Bypass states

void CAudioProcess::watch(CBypassState& state)
{
    const auto subscribe = [&](const CString& name) {
        CAudioParam& param = findParamByFullName(resolveName(name, getPath()));
        return param.subscribe(&state.dirtyGroups, getParamsChangedFlag());
    };
    state.param = subscribe(state.def->getParam());
    if (!state.def->getAndParam().isEmpty())
        state.andParam = subscribe(state.def->getAndParam());
}

double CAudioProcess::read(const CAudioParamSubscriptionPtr& param) const
{
    return param ? param->values->value(getGroupIndex(), getElementIndex()) : 0.0;
}

bool CAudioProcess::isStateActive(int id) const
{
    // An id without a state object never bypasses anything.
    for (const CBypassState& state : bypassStates)
        if (state.def->getId() == id)
            return state.def->isActive(read(state.param), read(state.andParam));
    return false;
}

bool CAudioProcess::takeStateChanges()
{
    bool isAny = false;
    for (CBypassState& state : bypassStates)
        isAny |= std::exchange(state.dirtyGroups, 0) != 0;
    return isAny;
}

void CAudioProcess::update()
{
    graphDirty |= takeStateChanges();
    if (graphDirty)
        rebuildGraph();
    if (getInputsChanged())
        publishInputs();
}

// The graph

void CAudioProcess::rebuildGraph()
{
    graphDirty = false;
    graph->compute([this](int id) { return isStateActive(id); });
    for (CAudioGraphNode& node : graph->getNodes())
        dropLinks(node);
    dropLinks(graph->getOutput());
    for (CAudioGraphNode& node : graph->getNodes())
        makeLinks(node);
    makeLinks(graph->getOutput());
    endUnused();
    orderSequence();
}

void CAudioProcess::dropLinks(CAudioGraphNode& node)
{
    for (int i = node.inputs.getCount() - 1; i >= 0; --i) {
        if (node.inputs[i].count > 0)
            continue;
        if (node.inputs[i].link)
            removeLink(node, node.inputs[i]);
        node.inputs.remove(i);
    }
}

void CAudioProcess::removeLink(CAudioGraphNode& node, const CAudioGraphConnection& connection)
{
    if (connection.source)
        disconnect(*connection.link);
    else
        disconnectInput(*connection.link);
    use(connection.source, -1);
    use(&node, -1);
}

void CAudioProcess::makeLinks(CAudioGraphNode& node)
{
    if (node.isWiring)
        return;
    for (CAudioGraphConnection& connection : node.inputs)
        if (!connection.link)
            makeLink(node, connection);
}

/// A child that can't be made is logged, and its links stay absent.
void CAudioProcess::makeLink(CAudioGraphNode& node, CAudioGraphConnection& connection)
{
    const bool isOutput = &node == &graph->getOutput();
    if (!create(connection.source) || (!isOutput && !create(&node)))
        return;
    CAudioProcessBase* source = connection.source ? connection.source->instance.get() : nullptr;
    CAudioProcessBase& target = isOutput ? getOutlet() : *node.instance;
    connection.link = source ? &connect(source, connection.sourcePort, target, connection.destPort)
                             : &connectInput(connection.sourcePort, target, connection.destPort);
    use(connection.source, 1);
    use(&node, 1);
}

void CAudioProcess::use(CAudioGraphNode* node, int change)
{
    if (node)
        node->instanceUses += change;
}

bool CAudioProcess::create(CAudioGraphNode* node)
{
    if (!node || node->instance)
        return true;
    const CAudioProcessPlace place{getGroupIndex(), getElementIndex(), false};
    CError* error = createProcess(node->instance, *node->def, getContext(), this,
                                  getPath() + "." + lastName(*node->def), place);
    handleError(error);
    return !error;
}

void CAudioProcess::endUnused()
{
    for (CAudioGraphNode& node : graph->getNodes())
        if (node.instance && node.instanceUses == 0) {
            node.instance->detach();
            node.instance.reset();
        }
}

void CAudioProcess::orderSequence()
{
    sequence.clear();
    const auto isPlaced = [this](const CAudioGraphConnection& connection) {
        return !connection.link || !connection.source ||
               sequence.indexOf(connection.source->instance.get()) >= 0;
    };
    int runningCount = 0;
    for (const CAudioGraphNode& node : graph->getNodes())
        runningCount += node.instance ? 1 : 0;
    for (bool isAnyNew = true; isAnyNew;) {
        isAnyNew = false;
        for (const CAudioGraphNode& node : graph->getNodes()) {
            if (!node.instance || sequence.indexOf(node.instance.get()) >= 0)
                continue;
            bool areAllPlaced = true;
            for (const CAudioGraphConnection& connection : node.inputs)
                areAllPlaced &= isPlaced(connection);
            if (areAllPlaced)
                sequence.add(node.instance.get());
            isAnyNew |= areAllPlaced;
        }
    }
    if (sequence.getCount() != runningCount)
        logFormat("process seq err // %s", getPath().toUtf8().c_str());
}

// Work

void CAudioProcess::listSteps(CAudioGraphSteps& steps)
{
    listInput(steps);
    for (CAudioProcessBase* child : sequence)
        child->listSteps(steps);
    listOutput(steps);
}

void CAudioProcess::process()
{
    pullAndDistribute();
    for (CAudioProcessBase* child : sequence)
        child->process();
    collectOutputs();
}

CAudioProcessBase* CAudioProcess::findChild(const CString& name) const
{
    for (const CAudioGraphNode& node : graph->getNodes())
        if (node.instance && lastName(*node.def) == name)
            return node.instance.get();
    return nullptr;
}

void CAudioProcess::listChildren(CArray<CAudioProcessBase*>& children)
{
    if (!graph)
        return;
    for (const CAudioGraphNode& node : graph->getNodes())
        if (node.instance)
            children.add(node.instance.get());
}

} // namespace tsm
