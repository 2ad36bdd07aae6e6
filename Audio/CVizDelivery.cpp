#include "Audio/CVizDelivery.h"

#include "Audio/CAudioVizReader.h"
#include "Audio/CVizListener.h"

#include <cmath>
#include <utility>

namespace tsm {

namespace {

constexpr double kLeastInactiveSeconds = 0.01;
constexpr double kUsualInactiveSeconds = 0.5;

} // namespace

CVizDelivery::CVizDelivery(double inactiveSeconds, double ticksPerSecond)
    : maxIdleTicks(static_cast<int>(std::ceil(
          (inactiveSeconds < kLeastInactiveSeconds ? kUsualInactiveSeconds : inactiveSeconds) *
          ticksPerSecond)))
{
}

CVizDelivery::~CVizDelivery() = default;

void CVizDelivery::addListener(const CString& processName, CVizListener& listener)
{
    CRegistration& made = registrations.create();
    made.name = processName;
    made.listener = &listener;
}

// The place stays till the next tick: the call may come from inside of a walk.
void CVizDelivery::removeListener(CVizListener& listener)
{
    for (CRegistration& registration : registrations)
        if (registration.listener == &listener)
            registration.listener = nullptr;
}

void CVizDelivery::sweep()
{
    for (int i = registrations.getCount() - 1; i >= 0; --i)
        if (!registrations[i].listener)
            registrations.remove(i);
}

void CVizDelivery::makeInactive(CRegistration& registration)
{
    registration.isInactive = true;
    registration.listener->onInactive();
}

void CVizDelivery::tick()
{
    sweep();
    if (!isActive)
        return;
    for (int i = 0; i < registrations.getCount(); ++i) {
        CRegistration& registration = registrations[i];
        if (!registration.listener || registration.isInactive)
            continue;
        if (registration.idleTicks >= maxIdleTicks)
            makeInactive(registration);
        else
            ++registration.idleTicks;
    }
}

void CVizDelivery::clear()
{
    waiting.clear();
    waitingCount = 0;
    for (int i = 0; i < registrations.getCount(); ++i)
        if (registrations[i].listener)
            makeInactive(registrations[i]);
}

CError* CVizDelivery::readVizData(CInputStream& stream)
{
    CAudioVizReader reader(stream);
    double now = 0.0;
    TSM_TRY(reader.begin(now));
    deliverDue(now);
    for (;;) {
        CPtr<CAudioVizData> record;
        TSM_TRY(reader.next(record));
        if (!record)
            return nullptr;
        if (record->time > now)
            keep(reader.getSourceName(), std::move(record));
        else
            deliver(reader.getSourceName(), *record);
    }
}

void CVizDelivery::deliver(const CString& name, const CAudioVizData& record)
{
    for (int i = 0; i < registrations.getCount(); ++i) {
        CRegistration& registration = registrations[i];
        if (!registration.listener || !(registration.name == name))
            continue;
        registration.idleTicks = 0;
        registration.isInactive = false;
        registration.listener->onData(record);
    }
}

void CVizDelivery::deliverDue(double now)
{
    for (auto* first = waiting.first(); first && first->key <= now; first = waiting.first()) {
        // Out of the map before anyone is called, who may clear it.
        const COwnedArray<CWaiting> due = std::move(first->value);
        waitingCount -= due.getCount();
        waiting.removeNode(first);
        for (const CWaiting& one : due)
            deliver(one.name, *one.record);
    }
}

void CVizDelivery::keep(const CString& name, CPtr<CAudioVizData> record)
{
    if (waitingCount >= kMaxWaiting)
        dropEarliest();
    CWaiting& place = waiting[record->time].create();
    place.name = name;
    place.record = std::move(record);
    ++waitingCount;
}

void CVizDelivery::dropEarliest()
{
    auto* const first = waiting.first();
    first->value.remove(0);
    --waitingCount;
    if (first->value.isEmpty())
        waiting.removeNode(first);
}

} // namespace tsm
