#include "Audio/CAudioVizCollector.h"

#include "Audio/CAudioEnv.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioParamDef.h"
#include "Core/CWriteSeqBuffer.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <utility>

namespace tsm {

void CAudioVizCollector::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

CError* CAudioVizCollector::init()
{
    TSM_TRY(CObject::init());
    TSM_TRY(findObjectByAttr(env, "env"));
    TSM_TRY(findObjectByAttr(paramCollector, "param-collector"));
    return findObjectChecked(enableDef, "shared::audio.param-enable-viz");
}

// Listeners

CAudioVizSource* CAudioVizCollector::findSource(const CString& name) const
{
    const CLockScope hold(sourcesLock);
    const CPtr<CAudioVizSource>* source = sources.find(name);
    return source ? source->get() : nullptr;
}

CAudioVizSource& CAudioVizCollector::getSource(const CString& name)
{
    if (CAudioVizSource* known = findSource(name))
        return *known;
    // The parameter stands before others can see the source.
    const CString enableName = name + "-enable";
    CAudioParam& enable = paramCollector->findOrCreate(enableName);
    enable.attachInfo(paramCollector->adoptInfo(enableDef->getInfo().cloneAs(enableName)));

    const CLockScope hold(sourcesLock);
    CPtr<CAudioVizSource>& source = sources[name];
    if (!source)
        source.reset(new CAudioVizSource(*this, name, enable));
    return *source;
}

void CAudioVizCollector::changeListeners(CAudioVizSource& source, std::int32_t delta)
{
    const CLockScope hold(env->lock);
    source.pendingDelta += delta;
    if (source.isPending)
        return;
    source.isPending = true;
    source.nextPending = std::exchange(pending, &source);
}

// The audio thread

void CAudioVizCollector::takePending() noexcept
{
    assert(!taken);
    taken = std::exchange(pending, nullptr);
    for (CAudioVizSource* source = taken; source; source = source->nextTaken) {
        source->nextTaken = std::exchange(source->nextPending, nullptr);
        source->takenDelta = std::exchange(source->pendingDelta, 0);
        source->isPending = false;
    }
}

void CAudioVizCollector::applyPending()
{
    for (CAudioVizSource* source = std::exchange(taken, nullptr); source;
         source = source->nextTaken)
        applyDelta(*source, source->takenDelta);
}

void CAudioVizCollector::applyDelta(CAudioVizSource& source, std::int32_t delta)
{
    const bool wasWatched = source.listeners > 0;
    source.listeners = std::max(source.listeners + delta, 0);
    const bool isWatched = source.listeners > 0;
    if (isWatched == wasWatched)
        return;
    if (!isWatched) {
        CAudioVizRecords dropped; // end outside of the lock
        const CLockScope hold(queueLock);
        dropped.swap(source.records);
    }
    source.enable.setValue(0, 0, isWatched ? 1.0 : 0.0, this);
}

void CAudioVizCollector::post(CAudioVizSource& source, CPtr<CAudioVizData> record)
{
    if (source.listeners == 0)
        return;
    record->slot = CAudioVizData::kNoSlot;
    CPtr<CAudioVizData> oldest; // ends outside of the lock
    const CLockScope hold(queueLock);
    if (source.records.getCount() == kMaxRecords)
        oldest = source.records.takeFirst();
    source.records.add(std::move(record));
}

// The windows

CError* CAudioVizCollector::writeStream(COutputStream& stream, double rate)
{
    double now = 0.0;
    {
        const CLockScope hold(env->lock);
        now = env->blockEndTime;
        if (std::isfinite(rate) && rate > 0.0)
            env->vizRate = rate;
    }
    CTakenList records;
    takeRecords(records);
    TSM_TRY(stream.writeValue(now));
    for (CTaken& each : records)
        if (each.records.getCount() > 0)
            TSM_TRY(writeSource(stream, each));
    return stream.writeValue(std::uint32_t{0});
}

void CAudioVizCollector::takeRecords(CTakenList& list)
{
    {
        const CLockScope hold(sourcesLock);
        for (const auto& entry : sources)
            list.create().source = entry.value.get();
    }
    // Sources are never removed, so one lock need not hold the other up.
    const CLockScope hold(queueLock);
    for (CTaken& each : list)
        each.records.swap(each.source->records);
}

CError* CAudioVizCollector::writeSource(COutputStream& stream, CTaken& from)
{
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(from.records.getCount())));
    TSM_TRY(stream.writeString(from.source->getName()));
    while (const CPtr<CAudioVizData> record = from.records.takeFirst())
        TSM_TRY(writeRecord(stream, *record));
    return nullptr;
}

CError* CAudioVizCollector::writeRecord(COutputStream& stream, const CAudioVizData& record)
{
    CWriteSeqBuffer body; // whose size stands in front of it
    TSM_TRY(record.write(body));
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(record.getType())));
    TSM_TRY(stream.writeValue(static_cast<std::uint32_t>(body.getSize())));
    return body.writeTo(stream);
}

void CAudioVizCollector::reset()
{
    CTakenList dropped;
    takeRecords(dropped);
}

} // namespace tsm
