#include "Audio/Processes/CModFilterFIRModule.h"

#include "Audio/CAudioBlockPool.h"
#include "Audio/Filters/CAudioFilterGenArray.h"
#include "Audio/Processes/CModFilterFIR.h"
#include "Audio/Processes/CModFilterFIRDef.h"
#include "Core/CLog.h"
#include "Core/CRounding.h"

#include <algorithm>

namespace tsm {

namespace {

enum ESlot { kCount, kIndex, kLatency, kFixsr, kLength, kFreq, kBeta };

// The names under which generators look for the values, in the order of the slots.
constexpr const char* kNames[] = {"count", "index", "latency", "fixsr", "length", "freq", "beta"};

constexpr double kDefaultLatency = 7.0;
constexpr double kMaxLatency = 14.0;

} // namespace

void CModFilterFIRModule::registerParams()
{
    static_assert(std::size(kNames) == kParamCount);
    for (int slot = 0; slot < kParamCount; ++slot) {
        // A definition with a single filter needn't have these two.
        const bool isOptional = slot == kCount || slot == kIndex;
        if (!isOptional || getProcess().findSlotValues(slot))
            registerParam(slot, params[slot]);
    }
}

void CModFilterFIRModule::reset()
{
    if (filter)
        filter->reset();
}

void CModFilterFIRModule::update()
{
    filter.reset();
    setLatency(0);
    if (!isDesignBound())
        return;
    COwnedArray<CAudioFilter> made;
    design(made);
    if (made.getCount() > 1)
        logFormat("FIR filter combining was not implemented yet! // %s",
                  getProcess().getPath().toUtf8().c_str());
    else if (!made.isEmpty() && !made[0].taps.isEmpty())
        use(made[0]);
}

bool CModFilterFIRModule::isDesignBound() const noexcept
{
    return std::all_of(params + kFixsr, params + kParamCount,
                       [](const CAudioModuleParam& param) { return param.getValues() != nullptr; });
}

double CModFilterFIRModule::read(int slot, double otherwise) const
{
    return params[slot].value(getGroupIndex(), getElementIndex(), otherwise);
}

void CModFilterFIRModule::design(COwnedArray<CAudioFilter>& filters) const
{
    const auto* array = static_cast<CModFilterFIR&>(getProcess()).getGenArray();
    const CAudioFilterGen* generator =
        array ? array->getItem(roundToInt(read(kIndex, 0.0))) : nullptr;
    if (!generator)
        return;
    CAudioFilterParams values;
    for (int slot = 0; slot < kParamCount; ++slot)
        if (params[slot].getValues())
            values.set(kNames[slot], read(slot, 0.0));
    // Two already are one too many to use.
    const int count = std::min(roundToInt(read(kCount, 1.0)), 2);
    for (int i = 0; i < count; ++i)
        generator->generate(values, getSampleRate(), filters);
}

void CModFilterFIRModule::use(const CAudioFilter& made)
{
    const auto& definition = static_cast<const CModFilterFIRDef&>(getProcess().getDefinition());
    const double* taps = made.taps.data();
    const int tapCount = made.taps.getCount();
    const double order = std::clamp(read(kLatency, kDefaultLatency), 0.0, kMaxLatency);
    filter.reset(definition.getIsZeroLatency()
                     ? new CFIRFilter(taps, tapCount)
                     : new CFIRFilter(taps, tapCount, 1 << roundToInt(order)));
    setLatency(made.latency + filter->getLatency());
}

void CModFilterFIRModule::processModules(CAudioModule* const* modules, int count)
{
    for (int i = 0; i < count; ++i)
        static_cast<CModFilterFIRModule*>(modules[i])->process();
}

void CModFilterFIRModule::process()
{
    CAudioBlockRef& output = getOutput().buffer;
    if (!filter) {
        output = getInput();
        return;
    }
    output = getPool().take(getBlockLength());
    filter->process(getInput().read(), output.write(), getBlockLength(), getInput().isSparse());
}

} // namespace tsm
