#include "Audio/Processes/CModFilterIIRModule.h"

#include "Audio/CAudioBlockPool.h"
#include "Audio/Filters/CAudioFilterGenArray.h"
#include "Audio/Processes/CModFilterIIR.h"
#include "Core/CRounding.h"

#include <cassert>
#include <iterator>

namespace tsm {

void CModFilterIIRModule::registerParams()
{
    registerParam(0, index);
}

void CModFilterIIRModule::reset()
{
    if (filter)
        filter->reset();
}

void CModFilterIIRModule::update()
{
    filter.reset();
    const auto* array = static_cast<CModFilterIIR&>(getProcess()).getGenArray();
    const int wanted = roundToInt(index.value(getGroupIndex(), getElementIndex()));
    const CAudioFilterGen* generator = array ? array->getItem(wanted) : nullptr;
    if (!generator)
        return;
    COwnedArray<CAudioFilter> made;
    generator->generate(CAudioFilterParams(), getSampleRate(), made);
    if (made.isEmpty() || made[0].branches.isEmpty())
        return;
    const CArray<double>& branches = made[0].branches;
    filter.emplace(branches.data(), branches.getCount() / 2);
}

void CModFilterIIRModule::processModules(CAudioModule* const* modules, int count)
{
    // Twice as many during a crossfade.
    CDCDAWFilterWorkspace::CLane lanes[2 * kMaxPortChannels];
    int laneCount = 0;
    assert(count <= static_cast<int>(std::size(lanes)));
    for (int i = 0; i < count; ++i) {
        auto& module = static_cast<CModFilterIIRModule&>(*modules[i]);
        const CAudioBlockRef& input = module.getInput();
        CAudioBlockRef& output = module.getOutput().buffer;
        if (!module.filter) {
            output = input;
            continue;
        }
        output = module.getPool().take(module.getBlockLength());
        lanes[laneCount++] = {input.read(), output.write(), &*module.filter, input.isSparse()};
    }
    if (laneCount > 0)
        CDCDAWFilterWorkspace::process(lanes, laneCount, modules[0]->getBlockLength());
}

} // namespace tsm
