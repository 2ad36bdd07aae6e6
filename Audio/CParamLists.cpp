#include "Audio/CParamLists.h"

#include "Core/CRounding.h"

#include <algorithm>

namespace tsm {

namespace {

int listLength(const CAudioParamStorage& values)
{
    return std::max(values.getElementCount(0), values.getFallbackCount());
}

} // namespace

void readParamNumbers(const CAudioParam& param, CArray<int>& numbers)
{
    numbers.clear();
    const CAudioParamStorage& values = param.getValues();
    for (int i = 0; i < listLength(values); ++i)
        numbers.add(roundToInt(values.value(0, i)));
}

void readParamTexts(const CAudioParam& param, COwnedArray<CString>& texts)
{
    texts.clear();
    const CAudioParamStorage& values = param.getValues();
    for (int i = 0; i < values.getElementCount(0); ++i)
        texts.create(values.text(0, i));
}

void writeParamNumbers(CAudioParam& param, const CArray<int>& numbers, const void* source,
                       CAudioParamContext* context)
{
    CArray<double> values;
    for (const int number : numbers)
        values.add(number);
    param.setValues(0, 0, values.data(), values.getCount(), source, context, true);
}

void writeParamTexts(CAudioParam& param, const COwnedArray<CString>& texts, const void* source,
                     CAudioParamContext* context)
{
    CAudioParamChange change;
    change.complete = true;
    {
        const CAudioParamLock lock(param);
        change.shape = param.getValues().getShape();
    }
    for (const CString& text : texts)
        change.addItem(CPtr<CAudioParamDataItem>(new CAudioParamDataItemString(text)));
    param.applyChange(change, source, context);
}

} // namespace tsm
