#include "Tools/hostlib/CHostAttributes.h"

#include "Audio/VST/VstText.h"

#include <algorithm>
#include <cstring>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

tresult CHostAttributes::queryInterface(const TUID wanted, void** obj)
{
    if (giveInterface<IAttributeList>(wanted, obj, this))
        return kResultOk;
    return FObject::queryInterface(wanted, obj);
}

tresult CHostAttributes::set(AttrID id, CValue value)
{
    if (!id)
        return kInvalidArgument;
    values[id] = std::move(value);
    return kResultOk;
}

template <class T>
const T* CHostAttributes::find(AttrID id) const
{
    const auto found = id ? values.find(id) : values.end();
    return found != values.end() ? std::get_if<T>(&found->second) : nullptr;
}

tresult CHostAttributes::setInt(AttrID id, int64 value)
{
    return set(id, value);
}

tresult CHostAttributes::getInt(AttrID id, int64& value)
{
    const auto* found = find<int64>(id);
    if (!found)
        return kResultFalse;
    value = *found;
    return kResultOk;
}

tresult CHostAttributes::setFloat(AttrID id, double value)
{
    return set(id, value);
}

tresult CHostAttributes::getFloat(AttrID id, double& value)
{
    const auto* found = find<double>(id);
    if (!found)
        return kResultFalse;
    value = *found;
    return kResultOk;
}

tresult CHostAttributes::setString(AttrID id, const TChar* string)
{
    return string ? set(id, std::u16string(viewOf(string))) : kInvalidArgument;
}

tresult CHostAttributes::getString(AttrID id, TChar* string, uint32 sizeInBytes)
{
    const auto* found = find<std::u16string>(id);
    if (!string || !found)
        return kResultFalse;
    // With its final 0 where there is room; hosts cut without one.
    const std::size_t room = sizeInBytes / sizeof(TChar);
    std::copy_n(found->c_str(), std::min(found->size() + 1, room), string);
    return kResultOk;
}

tresult CHostAttributes::setBinary(AttrID id, const void* data, uint32 sizeInBytes)
{
    if (!data && sizeInBytes > 0)
        return kInvalidArgument;
    return set(id, std::string(static_cast<const char*>(data), sizeInBytes));
}

tresult CHostAttributes::getBinary(AttrID id, const void*& data, uint32& sizeInBytes)
{
    const auto* found = find<std::string>(id);
    if (!found)
        return kResultFalse;
    data = found->data();
    sizeInBytes = static_cast<uint32>(found->size());
    return kResultOk;
}

} // namespace tsm
