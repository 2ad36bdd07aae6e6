#include "Audio/CAudioParamStorage.h"

#include "Core/CRounding.h"

#include <utility>

namespace tsm {

CAudioParamStorage& CAudioParamStorage::operator=(const CAudioParamStorage& other)
{
    if (this == &other)
        return *this;
    reset(other.shape);
    for (const CGroup& group : other.groups)
        groups.create().values = group.values;
    fallback = other.fallback;
    data = other.data;
    hasValues = other.hasValues;
    return *this;
}

void CAudioParamStorage::reset(const CAudioParamShape& newShape)
{
    shape = newShape;
    hasValues = false;
    groups.clear();
    fallback.clear();
    data.clear();
}

std::int32_t CAudioParamStorage::getElementCount(std::int32_t group) const noexcept
{
    if (group < 0 || group >= groups.getCount())
        return 0;
    return groups[group].values.getCount() / shape.elementSize;
}

std::int32_t CAudioParamStorage::getFallbackCount() const noexcept
{
    return fallback.getCount() / shape.elementSize;
}

// The first number of an element, by the rules of reading; null when there is nothing to read.
const double* CAudioParamStorage::place(std::int32_t group, std::int32_t element) const noexcept
{
    const int at = shape.isSingleElement ? 0 : element;
    const int from = shape.isSingleGroup ? 0 : group;
    if (!hasValues || at < 0)
        return nullptr;
    if (at < getElementCount(from))
        return groups[from].values.data() + at * shape.elementSize;
    if (fallback.isEmpty())
        return nullptr;
    return fallback.data() + (at < getFallbackCount() ? at * shape.elementSize : 0);
}

double CAudioParamStorage::value(std::int32_t group, std::int32_t element, double otherwise,
                                 std::int32_t subValue) const noexcept
{
    const double* found = place(group, element);
    if (!found || subValue < 0 || subValue >= shape.elementSize)
        return otherwise;
    return found[subValue];
}

const CString& CAudioParamStorage::text(std::int32_t group, std::int32_t element) const noexcept
{
    const double* id = place(group, element);
    return id ? textOfId(*id) : CString::getEmpty();
}

const CString& CAudioParamStorage::textOfId(double id) const noexcept
{
    const CAudioParamDataItem* found = holdsItems() ? data.findValue(id) : nullptr;
    if (!found || found->getType() != EAudioParamType::String)
        return CString::getEmpty();
    return static_cast<const CAudioParamDataItemString*>(found)->text;
}

const CByteBuffer* CAudioParamStorage::raw(std::int32_t group, std::int32_t element) const noexcept
{
    const double* id = holdsItems() ? place(group, element) : nullptr;
    const CAudioParamDataItem* found = id ? data.findValue(*id) : nullptr;
    if (!found || found->getType() != EAudioParamType::Raw)
        return nullptr;
    return &static_cast<const CAudioParamDataItemRaw*>(found)->block;
}

bool CAudioParamStorage::apply(CAudioParamChange& change)
{
    if (!change.isValid())
        return false;
    const bool isForAll = change.group == kAllParamGroups;
    if (!(change.shape == shape) && !(isForAll && change.complete))
        return false;
    change.normalize();
    if (isForAll && change.complete) {
        applyComplete(change);
    } else if (isForAll) {
        applyToEach(change);
    } else {
        holdGroup(change.group);
        write(groups[change.group].values, change);
    }
    hasValues = true;
    return true;
}

void CAudioParamStorage::applyComplete(CAudioParamChange& change)
{
    if (!(shape == change.shape))
        reset(change.shape);
    for (int i = groups.getCount() - 1; i > 0; --i) {
        shorten(groups[i].values, 0, change);
        groups.remove(i);
    }
    holdGroup(0);
    writeCopy(fallback, change);
    write(groups[0].values, change);
}

void CAudioParamStorage::applyToEach(CAudioParamChange& change)
{
    holdGroup(0);
    for (CGroup& group : groups)
        writeCopy(group.values, change);
    write(fallback, change);
}

void CAudioParamStorage::writeCopy(CValues& values, CAudioParamChange& change)
{
    CAudioParamChange copy(change);
    write(values, copy);
    change.data.absorb(copy.data);
}

void CAudioParamStorage::holdGroup(std::int32_t group)
{
    while (groups.getCount() <= group)
        groups.create();
}

void CAudioParamStorage::write(CValues& values, CAudioParamChange& change)
{
    const int first = change.firstElement * shape.elementSize;
    const int end = first + change.values.getCount();
    if (change.complete && values.getCount() > end)
        shorten(values, end, change);
    if (values.getCount() < end) {
        const int former = values.getCount();
        values.resize(end, 0.0);
        fillGap(values, former, first);
    }
    for (int i = first; i < end; ++i) {
        if (holdsItems())
            writeItem(values[i], change, i - first);
        else
            values[i] = change.values[i - first];
    }
}

// Gives new values that no change has set what they would read as without being held.
void CAudioParamStorage::fillGap(CValues& values, int firstValue, int endValue)
{
    for (int i = firstValue; i < endValue; ++i) {
        const int from = i < fallback.getCount() ? i : i % shape.elementSize;
        const double filler = from < fallback.getCount() ? fallback[from] : 0.0;
        const CAudioParamDataItem* shared = holdsItems() ? data.findValue(filler) : nullptr;
        values[i] = shared ? data.add(CPtr<CAudioParamDataItem>(shared->clone())) : filler;
    }
}

// The items go with the change, to be freed by its owner.
void CAudioParamStorage::shorten(CValues& values, int valueCount, CAudioParamChange& change)
{
    for (int i = valueCount; holdsItems() && i < values.getCount(); ++i)
        if (auto dropped = data.take(roundToInt(values[i])))
            change.data.add(std::move(dropped));
    values.resize(valueCount);
}

void CAudioParamStorage::writeItem(double& value, CAudioParamChange& change, int index)
{
    auto taken = change.data.take(roundToInt(change.values[index]));
    if (!taken || taken->getType() != shape.dataType)
        taken = CAudioParamDataItem::create(shape.dataType);
    auto replaced = data.take(roundToInt(value));
    value = data.add(std::move(taken));
    if (replaced)
        change.data.add(std::move(replaced));
    change.values[index] = 0.0;
}

void CAudioParamStorage::copyValues(const double* from, int valueCount,
                                    CAudioParamChange& change) const
{
    for (int i = 0; i < valueCount; ++i) {
        if (!holdsItems()) {
            change.values.add(from[i]);
            continue;
        }
        const CAudioParamDataItem* source = data.findValue(from[i]);
        change.values.add(change.data.add(source ? CPtr<CAudioParamDataItem>(source->clone())
                                                 : CAudioParamDataItem::create(shape.dataType)));
    }
    change.elementCount = change.values.getCount() / shape.elementSize;
}

void CAudioParamStorage::copyGroup(std::int32_t group, CAudioParamChange& change) const
{
    change = CAudioParamChange();
    change.group = group;
    change.complete = true;
    change.shape = shape;
    if (getElementCount(group) > 0)
        copyValues(groups[group].values.data(), groups[group].values.getCount(), change);
}

void CAudioParamStorage::copyElement(std::int32_t group, std::int32_t element,
                                     CAudioParamChange& change) const
{
    change = CAudioParamChange();
    change.group = group;
    change.firstElement = element;
    change.shape = shape;
    if (const double* from = place(group, element))
        copyValues(from, shape.elementSize, change);
}

void CAudioParamStorage::copyFallback(CAudioParamChange& change) const
{
    change = CAudioParamChange();
    change.group = kAllParamGroups;
    change.complete = true;
    change.shape = shape;
    copyValues(fallback.data(), fallback.getCount(), change);
}

} // namespace tsm
