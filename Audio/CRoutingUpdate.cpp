#include "Audio/CRoutingUpdate.h"

#include "Audio/CParamLists.h"

#include <array>
#include <optional>

namespace tsm {

/// The locks of all parameters that take part, in the order of taking.
class CRoutingUpdate::CLocks {
public:
    explicit CLocks(const CWrapperParams& params)
    {
        const std::array all{params.inChannelNames, params.groupNames,  params.inRouting,
                             params.grouping,       params.outRouting,  params.sidechain,
                             params.sidechainMute,  params.midSidePairs};
        static_assert(all.size() == kMaxLocks);
        for (std::size_t i = 0; i < all.size(); ++i)
            if (all[i])
                locks[i].emplace(*all[i]);
    }

private:
    static constexpr std::size_t kMaxLocks = 8;

    std::array<std::optional<CAudioParamLock>, kMaxLocks> locks;
};

namespace {

/// Whether a parameter that takes part holds values of that type; one that is switched off doesn't
/// stand in the way.
bool isReady(const CAudioParam* param, EAudioParamType type)
{
    return !param ||
           (param->getValues().getHasValues() && param->getValues().getShape().dataType == type);
}

void readIfBound(const CAudioParam* param, CArray<int>& numbers)
{
    if (param)
        readParamNumbers(*param, numbers);
}

} // namespace

void CRoutingUpdate::run(bool force, int intChannelCount, const void* source,
                         CAudioParamContext* context)
{
    isPending |= force;
    if (!isPending || !params.inRouting)
        return;
    CAudioParamBatch ownBatch;
    CAudioParamContext joined = context ? *context : CAudioParamContext();
    if (!joined.batch)
        joined.batch = &ownBatch;
    {
        const CLocks locks(params);
        rewrite(intChannelCount, source, joined);
    }
    params.inRouting->getCollector().queueBatch(ownBatch);
}

void CRoutingUpdate::rewrite(int intChannelCount, const void* source,
                             CAudioParamContext& context) const
{
    CRoutingState state;
    if (host.main.isEmpty() && host.sidechain.isEmpty())
        return;
    if (!readState(state) || !state.isUntouched())
        return;
    state.adapt(host, intChannelCount);
    writeState(state, source, context);
}

bool CRoutingUpdate::readState(CRoutingState& state) const
{
    const CAudioParam* const numbers[] = {params.inRouting,     params.grouping,
                                          params.outRouting,    params.sidechain,
                                          params.sidechainMute, params.midSidePairs};
    for (const CAudioParam* param : numbers)
        if (!isReady(param, EAudioParamType::Number))
            return false;
    if (!isReady(params.inChannelNames, EAudioParamType::String) ||
        !isReady(params.groupNames, EAudioParamType::String))
        return false;
    readParamNumbers(*params.inRouting, state.inRouting);
    readParamNumbers(*params.grouping, state.grouping);
    readParamNumbers(*params.outRouting, state.outRouting);
    readIfBound(params.sidechain, state.sidechain);
    readIfBound(params.sidechainMute, state.sidechainMute);
    readIfBound(params.midSidePairs, state.midSidePairs);
    readParamTexts(*params.inChannelNames, state.channelNames);
    readParamTexts(*params.groupNames, state.groupNames);
    return true;
}

void CRoutingUpdate::writeState(const CRoutingState& state, const void* source,
                                CAudioParamContext& context) const
{
    writeParamTexts(*params.inChannelNames, state.channelNames, source, &context);
    writeParamTexts(*params.groupNames, state.groupNames, source, &context);
    writeParamNumbers(*params.inRouting, state.inRouting, source, &context);
    if (params.sidechain) {
        writeParamNumbers(*params.sidechain, state.sidechain, source, &context);
        writeParamNumbers(*params.sidechainMute, state.sidechainMute, source, &context);
    }
    writeParamNumbers(*params.outRouting, state.outRouting, source, &context);
    writeParamNumbers(*params.grouping, state.grouping, source, &context);
}

} // namespace tsm
