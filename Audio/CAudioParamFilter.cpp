#include "Audio/CAudioParamFilter.h"

#include "Audio/CAudioParamCollector.h"
#include "Core/CText.h"

#include <algorithm>

namespace tsm {

CAudioParamFilter::~CAudioParamFilter()
{
    if (!attached)
        return;
    for (CAudioParam* param : srcParams) {
        CAudioParamLock hold(*param);
        param->removeFilter(*this);
    }
}

CError* CAudioParamFilter::checkCounts(int srcCount, int dstCount) const
{
    if (srcCount < minSrcCount())
        TSM_FAIL("@tsmstr_CAudioParamFilter_init_NotEnoughSrc Not enough source parameters %1 "
                 "defined in the param filter (required %2).",
                 toString(srcCount), toString(minSrcCount()));
    if (srcCount > kMaxParams)
        TSM_FAIL("@tsmstr_CAudioParamFilter_init_TooManySrc Too many source parameters %1 "
                 "defined in the param filter.",
                 toString(srcCount));
    if (dstCount < minDstCount())
        TSM_FAIL("@tsmstr_CAudioParamFilter_init_NotEnoughDst Not enough destination parameters "
                 "%1 defined in the param filter (required %2).",
                 toString(dstCount), toString(minDstCount()));
    if (dstCount > kMaxParams)
        TSM_FAIL("@tsmstr_CAudioParamFilter_init_TooManyDst Too many destination parameters %1 "
                 "defined in the param filter.",
                 toString(dstCount));
    return nullptr;
}

CError* CAudioParamFilter::init(CAudioProcessBase* process, CAudioParamCollector& paramCollector,
                                const COwnedArray<CString>& srcNames,
                                const COwnedArray<CString>& dstNames)
{
    TSM_TRY(checkCounts(srcNames.getCount(), dstNames.getCount()));
    owner = process;
    collector = &paramCollector;
    for (const CString& name : srcNames)
        srcParams.add(&collector->findOrCreate(name));
    for (const CString& name : dstNames)
        dstParams.add(&collector->findOrCreate(name));
    return nullptr;
}

void CAudioParamFilter::attach()
{
    CLockScope withOthers(collector->filterLock);
    CSlots src;
    CSlots dst;
    lockSlots(srcParams, src);
    lockSlots(dstParams, dst);
    for (CAudioParam* param : srcParams) {
        param->markFiltered();
        param->addFilter(*this);
    }
    for (CAudioParam* param : dstParams)
        param->markFiltered();
    for (const CAudioParam* param : srcParams)
        runAtAttach(*param);
    attached = true;
    unlockSlots(dst);
    unlockSlots(src);
}

void CAudioParamFilter::runAtAttach(const CAudioParam& source)
{
    CAudioParamContext context;
    CAudioParamChange change;
    source.getValues().copyFallback(change);
    run(change, context);
    for (int group = 0; group < source.getValues().getGroupCount(); ++group) {
        source.getValues().copyGroup(group, change);
        run(change, context);
    }
}

void CAudioParamFilter::lockSlots(const CParams& params, CSlots& slots)
{
    for (int i = 0; i < params.getCount(); ++i) {
        slots[i].lock.emplace(*params[i]);
        slots[i].param = params[i];
        slots[i].info = params[i]->getInfo();
        slots[i].values = &params[i]->getValues();
    }
}

void CAudioParamFilter::unlockSlots(CSlots& slots)
{
    for (int i = kMaxParams - 1; i >= 0; --i)
        slots[i].lock.reset();
}

bool CAudioParamFilter::haveValues(const CSlots& slots)
{
    return std::all_of(std::begin(slots), std::end(slots), [](const CSlot& slot) {
        return !slot.param || (slot.info && slot.values->getHasValues());
    });
}

void CAudioParamFilter::run(const CAudioParamChange& change, CAudioParamContext& context)
{
    CSlots src;
    CSlots dst;
    lockSlots(srcParams, src);
    lockSlots(dstParams, dst);
    if (haveValues(src) && haveValues(dst))
        apply(src, dst, change, context);
    unlockSlots(dst);
    unlockSlots(src);
}

void CAudioParamFilter::writeWhole(CSlot& dst, std::int32_t group, double value,
                                   CAudioParamContext& context)
{
    dst.param->setValues(group, 0, &value, 1, nullptr, &context, true);
}

int CAudioParamFilter::compute(const CSlots&, std::int32_t, std::int32_t, double*) const
{
    return 0;
}

void CAudioParamFilter::apply(CSlots& src, CSlots& dst, const CAudioParamChange& change,
                              CAudioParamContext& context)
{
    for (int i = 0; i < getDstCount(); ++i) {
        if (dst[i].info->shape.dataType != EAudioParamType::Number)
            continue;
        CAudioParamChange result;
        result.group = change.group;
        result.firstElement = change.firstElement;
        result.complete = change.complete;
        result.shape = dst[i].info->shape;
        computeValues(src, i, change, result);
        dst[i].param->applyChange(result, nullptr, &context);
    }
}

// A complete change of one source concerns all elements that any of them holds.
int CAudioParamFilter::elementCountFor(const CSlots& src, const CAudioParamChange& change) const
{
    const int group = change.group == kAllParamGroups ? 0 : change.group;
    int count = change.elementCount;
    for (int i = 0; change.complete && i < getSrcCount(); ++i)
        count = std::max(count, src[i].values->getElementCount(group) - change.firstElement);
    return count;
}

void CAudioParamFilter::computeValues(const CSlots& src, int dst, const CAudioParamChange& change,
                                      CAudioParamChange& result) const
{
    const int group = change.group == kAllParamGroups ? 0 : change.group;
    const CAudioParamStorage& paired = *src[std::min(dst, getSrcCount() - 1)].values;
    result.elementCount = elementCountFor(src, change);
    for (int i = 0; i < result.elementCount; ++i) {
        const int element = change.firstElement + i;
        double results[kMaxParams] = {};
        const int given = compute(src, group, element, results);
        result.values.add(dst < given ? results[dst] : paired.value(group, element));
        for (int e = 1; e < result.shape.elementSize; ++e)
            result.values.add(paired.value(group, element, 0.0, e));
    }
}

} // namespace tsm
