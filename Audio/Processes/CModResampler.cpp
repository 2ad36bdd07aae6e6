#include "Audio/Processes/CModResampler.h"

#include "Audio/CAudioParam.h"
#include "Audio/Processes/CModResamplerDef.h"
#include "Core/CApplication.h"
#include "Core/CRounding.h"
#include "Core/CText.h"

#include <algorithm>

namespace tsm {

namespace {

constexpr int kMaxDoublings = 3;
constexpr int kStagesPerDoubling = 2;

int readRounded(const CAudioParamSubscriptionPtr& slot, double otherwise)
{
    return roundToInt(slot->values->value(0, 0, otherwise));
}

} // namespace

bool CModResampler::isUp() const
{
    return dynamic_cast<const CModResamplerDef&>(getDefinition()).getIsUpsampler();
}

CError* CModResampler::init()
{
    TSM_TRY(CModProcessSeq::init());
    TSM_TRY(findDefinition(rateStage, isUp() ? "shared::audio.modUpsamplerInterpolator"
                                             : "shared::audio.modDownsamplerDecimator"));
    TSM_TRY(findDefinition(steepFilter, isUp() ? "shared::audio.modUpsamplerFilterSteep"
                                               : "shared::audio.modDownsamplerFilterSteep"));
    TSM_TRY(findDefinition(softFilter, "shared::audio.modResamplerFilterSoft"));
    mode = findParam("mode").subscribe(&dirtyGroups, getParamsChangedFlag());
    hostMode = findParam("host-mode").subscribe(&dirtyGroups, getParamsChangedFlag());
    return nullptr;
}

CError* CModResampler::findDefinition(const CAudioProcessDefBase*& target, const char* name) const
{
    CObject* root = CApplication::get()->getSharedRoot();
    const CString path(name);
    const CString prefix("shared::");
    CObject* found = root ? root->findObject(path.substring(prefix.getLength())) : nullptr;
    target = dynamic_cast<const CAudioProcessDefBase*>(found);
    if (!target)
        TSM_FAIL("@tsmstr_CObject_FindError Name attribute '%1' refers to a non-existent object "
                 "'%2' ('%3')",
                 "is-upsampler", path, getPath());
    return nullptr;
}

void CModResampler::update()
{
    handleError(setStageCount(chooseStageCount()));
    CModProcessSeq::update();
}

int CModResampler::chooseStageCount() const
{
    constexpr double kSingleRate = 1.0;
    const int wanted = readRounded(mode, kSingleRate);
    const int doublings = wanted != 0 ? wanted - 1 : readRounded(hostMode, 0.0);
    return kStagesPerDoubling * std::clamp(doublings, 0, kMaxDoublings);
}

// The steep filter stays next to the host's rate: at the front going up, at the end coming down.
CError* CModResampler::setStageCount(int count)
{
    while (getChainLength() > count)
        removeProcess(isUp() ? getChainLength() - 1 : 0);
    while (getChainLength() < count)
        TSM_TRY(addPair());
    return nullptr;
}

CError* CModResampler::addPair()
{
    const CAudioProcessDefBase& filter = getChainLength() == 0 ? *steepFilter : *softFilter;
    if (isUp()) {
        TSM_TRY(addStage(getChainLength(), *rateStage, "modInterpInterp"));
        return addStage(getChainLength(), filter, "modFilter");
    }
    TSM_TRY(addStage(0, *rateStage, "modInterpDecim"));
    return addStage(0, filter, "modFilter");
}

CError* CModResampler::addStage(int index, const CAudioProcessDefBase& stage, const char* name)
{
    // Stages of one name would share the parameters below it: those of later pairs are numbered.
    const int pair = getChainLength() / kStagesPerDoubling;
    const CString number = pair > 0 ? toString(pair + 1) : CString();
    CPtr<CAudioProcessBase> made;
    TSM_TRY(createProcess(made, stage, getContext(), this, getPath() + "." + name + number));
    insertProcess(index, std::move(made));
    return nullptr;
}

} // namespace tsm
