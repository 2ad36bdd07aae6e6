#include "Audio/CAudioParamChange.h"

#include "Core/CRounding.h"

#include <algorithm>
#include <utility>

namespace tsm {

namespace {

bool isValidShape(const CAudioParamShape& shape)
{
    switch (shape.dataType) {
    case EAudioParamType::Number:
        return shape.elementSize >= 1 && shape.elementSize <= kMaxParamElementSize;
    case EAudioParamType::String:
    case EAudioParamType::Raw:
        return shape.elementSize == 1;
    }
    return false;
}

} // namespace

bool CAudioParamChange::isValid() const noexcept
{
    const bool isGroupValid = group == kAllParamGroups || (group >= 0 && group < kMaxParamGroups);
    return isGroupValid && isValidShape(shape) && firstElement >= 0 && elementCount >= 0 &&
           firstElement <= kMaxParamElements && elementCount <= kMaxParamElements - firstElement &&
           values.getCount() == elementCount * shape.elementSize;
}

void CAudioParamChange::normalize()
{
    if (shape.isSingleGroup && group != kAllParamGroups)
        group = 0;
    if (!shape.isSingleElement)
        return;
    firstElement = 0;
    elementCount = std::min(elementCount, 1);
    values.resize(elementCount * shape.elementSize);
}

bool CAudioParamChange::adjoins(const CAudioParamChange& newer) const noexcept
{
    if (group != newer.group || !(shape == newer.shape))
        return false;
    return newer.complete || (newer.firstElement <= firstElement + elementCount &&
                              firstElement <= newer.firstElement + newer.elementCount);
}

void CAudioParamChange::merge(CAudioParamChange& newer)
{
    if (newer.complete) {
        *this = std::move(newer);
        return;
    }
    const int first = std::min(firstElement, newer.firstElement);
    const int end = std::max(firstElement + elementCount, newer.firstElement + newer.elementCount);
    CArray<double> merged;
    merged.resize((end - first) * shape.elementSize);
    std::copy(values.begin(), values.end(),
              merged.data() + (firstElement - first) * shape.elementSize);
    double* place = merged.data() + (newer.firstElement - first) * shape.elementSize;
    for (const double value : newer.values) {
        double taken = value;
        if (shape.dataType != EAudioParamType::Number) {
            data.take(roundToInt(*place)).reset();
            auto item = newer.data.take(roundToInt(value));
            taken = item ? data.add(std::move(item)) : 0;
        }
        *place++ = taken;
    }
    values = std::move(merged);
    firstElement = first;
    elementCount = end - first;
    newer.values.clear();
}

void CAudioParamChange::addItem(CPtr<CAudioParamDataItem> item)
{
    values.add(data.add(std::move(item)));
    ++elementCount;
}

CPtr<CAudioParamDataItem> CAudioParamChange::copyItem(int index) const
{
    const CAudioParamDataItem* item = data.findValue(values[index]);
    if (!item || item->getType() != shape.dataType)
        return CAudioParamDataItem::create(shape.dataType);
    return CPtr<CAudioParamDataItem>(item->clone());
}

} // namespace tsm
