#pragma once

#include "Audio/VST/FObject.h"
#include "Audio/VST/Interfaces/IMessage.h"

#include <map>
#include <string>
#include <variant>

namespace tsm {

/// Named values that a host hands to plug-ins; texts and binary data are copied.
class CHostAttributes : public Steinberg::FObject, public Steinberg::Vst::IAttributeList {
public:
    Steinberg::tresult queryInterface(const Steinberg::TUID wanted, void** obj) override;
    TSM_VST_REFCOUNT(Steinberg::FObject)

    Steinberg::tresult setInt(Steinberg::Vst::AttrID id, Steinberg::int64 value) override;
    Steinberg::tresult getInt(Steinberg::Vst::AttrID id, Steinberg::int64& value) override;
    Steinberg::tresult setFloat(Steinberg::Vst::AttrID id, double value) override;
    Steinberg::tresult getFloat(Steinberg::Vst::AttrID id, double& value) override;
    Steinberg::tresult setString(Steinberg::Vst::AttrID id,
                                 const Steinberg::Vst::TChar* string) override;
    Steinberg::tresult getString(Steinberg::Vst::AttrID id, Steinberg::Vst::TChar* string,
                                 Steinberg::uint32 sizeInBytes) override;
    Steinberg::tresult setBinary(Steinberg::Vst::AttrID id, const void* data,
                                 Steinberg::uint32 sizeInBytes) override;
    Steinberg::tresult getBinary(Steinberg::Vst::AttrID id, const void*& data,
                                 Steinberg::uint32& sizeInBytes) override;

private:
    using CValue = std::variant<Steinberg::int64, double, std::u16string, std::string>;

    Steinberg::tresult set(Steinberg::Vst::AttrID id, CValue value);
    /// Null when there is no value of that type.
    template <class T>
    [[nodiscard]] const T* find(Steinberg::Vst::AttrID id) const;

    std::map<std::string, CValue, std::less<>> values;
};

} // namespace tsm
