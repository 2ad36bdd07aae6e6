#include "Audio/Processes/CModFilterIIRModule.h"

#include "Audio/CAudioBlockPool.h"
#include "Audio/Filters/CAudioFilterGenArray.h"
#include "Audio/Processes/CModFilterIIR.h"
#include "Core/CText.h"

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
    for (int i = 0; i < count; ++i)
        static_cast<CModFilterIIRModule*>(modules[i])->process();
}

void CModFilterIIRModule::process()
{
    CAudioBlockRef& output = getOutput().buffer;
    if (!filter) {
        output = getInput();
        return;
    }
    output = getPool().take(getBlockLength());
    filter->process(getInput().read(), output.write(), getBlockLength());
}

} // namespace tsm
