#include "Audio/Processes/CModBankedConvolver.h"

#include "Audio/CAudioBlockPool.h"
#include "Audio/CAudioParam.h"
#include "Audio/CParamName.h"
#include "Audio/Processes/CBankedImpulseCache.h"
#include "Audio/Processes/CImpulseGain.h"
#include "Audio/Processes/CModBankedConvolverDef.h"
#include "Core/CLog.h"
#include "Core/CRounding.h"
#include "Core/CText.h"
#include "rsk/CDSPRealFFTPool.h"

#include <algorithm>
#include <utility>

namespace tsm {

namespace {

const CModBankedConvolverDef& definitionOf(const CAudioProcessBase& process)
{
    return static_cast<const CModBankedConvolverDef&>(process.getDefinition());
}

CString describe(const CBankedImpulse& impulse)
{
    return "Loaded (" + toFixed(impulse.fileRate, 0) + ", " + toString(impulse.bits) + "-bit, " +
           toFixed(impulse.seconds, 3) + " s)";
}

} // namespace

CModBankedConvolver::~CModBankedConvolver()
{
    endFilters();
}

CError* CModBankedConvolver::init()
{
    TSM_TRY(CAudioProcessBase::init());
    TSM_TRY(findFileSet());
    static_cast<void>(rsk::CDSPRealFFTPool::get(CImpulseGain::kOrder)); // made before audio runs
    subscribe();
    return nullptr;
}

CError* CModBankedConvolver::findFileSet()
{
    const CString& path = definitionOf(*this).getFileSetName();
    fileSet = dynamic_cast<const CFileSetObject*>(definitionOf(*this).findObject(path));
    if (!fileSet)
        TSM_FAIL("@tsmstr_CObject_FindError Name attribute '%1' refers to a non-existent object "
                 "'%2' ('%3')",
                 "fileset", path, getPath());
    return nullptr;
}

void CModBankedConvolver::subscribe()
{
    for (const auto& entry : getDefinition().getAllocs())
        if (entry.key < ParamCount)
            params[entry.key] = findParam(entry.value->getParamName())
                                    .subscribe(&dirtyGroups, getParamsChangedFlag());
    for (int i = 0; i < ParamCount; ++i)
        if (!params[i])
            logFormat("regModuleParam error %i // %s", i, getPath().toUtf8().c_str());
}

const CAudioParamStorage* CModBankedConvolver::valuesOf(EParam param) const
{
    return params[param] ? params[param]->values : nullptr;
}

void CModBankedConvolver::reset()
{
    CAudioProcessBase::reset();
    resetFilters();
    for (CDSPModDelay& delay : delays)
        delay.reset();
}

void CModBankedConvolver::resetFilters()
{
    for (CFilter& filter : filters)
        filter.convolver.reset();
}

void CModBankedConvolver::update()
{
    const bool isFormatNew = takeFormat();
    const bool isChoiceNew = takeChoice();
    if (!isEnabled()) {
        endFilters();
        setStatus("Bypass");
    } else if (isFormatNew || isChoiceNew || filters.isEmpty()) {
        reload();
        // What was heard at another rate means nothing at this one, nor do the taps of that rate,
        // which stages would go on with until their next block.
        if (isFormatNew)
            resetFilters();
    }
    fitDelays();
}

/// Tells whether rate or channels are others than those of the last load.
bool CModBankedConvolver::takeFormat()
{
    if (!getInputsChanged())
        return false;
    const int count = getPort(0).getChannelCount();
    const bool isOther = getSampleRate() != rate || count != channelCount;
    if (isOther) {
        rate = getSampleRate();
        channelCount = count;
        latency = roundToInt(rate * definitionOf(*this).getLatencySeconds());
        delays.clear();
    }
    publishChannels(rate, getInputLatency() + latency);
    return isOther;
}

/// Tells whether another impulse is wanted than the last one.
bool CModBankedConvolver::takeChoice()
{
    const CAudioParamStorage* indexes = valuesOf(Index);
    const CAudioParamStorage* names = valuesOf(FileName);
    const int newIndex =
        indexes ? roundToInt(indexes->value(getGroupIndex(), getElementIndex(), 1.0)) : 1;
    const CString newName =
        names && newIndex == 0 ? names->text(getGroupIndex(), getElementIndex()) : CString();
    const bool isOther = newIndex != index || newName != fileName;
    index = newIndex;
    fileName = newName;
    return isOther;
}

bool CModBankedConvolver::isEnabled() const
{
    const CAudioParamStorage* values = valuesOf(Enable);
    return !values || values->value(getGroupIndex(), getElementIndex(), 1.0) >= 0.5;
}

void CModBankedConvolver::reload()
{
    if (channelCount == 0) {
        endFilters();
        return;
    }
    CBankedImpulseRef impulse;
    if (handleError(load(impulse))) {
        endFilters();
        setStatus("[B]Load error[/B]");
        return;
    }
    setImpulse(impulse);
    setStatus(describe(*impulse));
}

CError* CModBankedConvolver::load(CBankedImpulseRef& impulse) const
{
    CImpulseSource source;
    if (index == 0)
        TSM_TRY(CImpulseSource::fromFile(source, fileName));
    else
        TSM_TRY(CImpulseSource::fromSet(source, *fileSet, static_cast<std::uint32_t>(index)));
    TSM_TRY(CBankedImpulseCache::get().load(impulse, source, rate, channelCount));
    return nullptr;
}

void CModBankedConvolver::setImpulse(const CBankedImpulseRef& impulse)
{
    while (filters.getCount() > channelCount)
        filters.remove(filters.getCount() - 1);
    while (filters.getCount() < channelCount)
        filters.create();
    workCount = 0;
    for (int i = 0; i < channelCount; ++i) {
        rsk::CDSPZeroLatencyConvolver& convolver = filters[i].convolver;
        convolver.load(channelOf(impulse, i));
        workCount = std::max(workCount, convolver.getWorkCount());
    }
    CBankedImpulseCache::get().trim();
}

void CModBankedConvolver::endFilters()
{
    if (filters.isEmpty())
        return;
    filters.clear();
    CBankedImpulseCache::get().trim();
}

void CModBankedConvolver::fitDelays()
{
    if (!filters.isEmpty() || latency == 0) {
        delays.clear();
        return;
    }
    while (delays.getCount() < channelCount)
        delays.create(getPool()).setDelay(latency);
}

void CModBankedConvolver::setStatus(const CString& text)
{
    const CString& name = definitionOf(*this).getStatusParam();
    if (name.isEmpty())
        return;
    CAudioParam& status = findParamByFullName(resolveName(name, getPath()));
    if (status.text(getGroupIndex(), getElementIndex()) != text)
        status.setText(getGroupIndex(), getElementIndex(), text);
}

void CModBankedConvolver::process()
{
    if (!pull())
        return;
    const CAudioPort& port = getPort(0);
    const int length = getBlockLength();
    const CAudioBlockRef work = getPool().take(std::max(workCount, 1));
    for (int i = 0; i < port.getChannelCount(); ++i) {
        CAudioBlockRef block = getPool().take(length);
        processChannel(i, port.getChannel(i).buffer.read(), block.write(), length, work.write());
        send(i, std::move(block), length);
    }
    releaseInputs();
}

void CModBankedConvolver::processChannel(int channel, const double* in, double* out, int count,
                                         double* work)
{
    if (channel < filters.getCount()) {
        filters[channel].convolver.process(in, out, count, work);
    } else if (channel < delays.getCount()) {
        delays[channel].process(in, out, count);
    } else {
        std::fill_n(out, count, 0.0);
    }
}

} // namespace tsm
