#pragma once

#include "Audio/CAudioPresetBank.h"

namespace tsm {

/// Hears, at the client's end of the parameter interface, of one registry of presets. It leaves the
/// client before it goes. Called on the client's thread.
class CParamInterfaceRegistryListener : public CCheckedObject {
public:
    virtual ~CParamInterfaceRegistryListener() = default;

    /// For the listener's own purposes: no message calls it. [ui]
    virtual void onOwnRequest() {}
    /// The display names of a bank's presets, and the current one of the session's, -1 for none.
    /// `id` is what all presets of the registry have in front of their names. [ui]
    virtual void onBankData(bool isFactory, const CString& id, const COwnedArray<CString>& names,
                            std::int32_t currentIndex) = 0;
    /// The answer to a request by the number that the listener gave it. [ui]
    virtual void onPreset(std::uint32_t requestId, const CAudioPreset& preset) = 0;
    virtual void onBank(std::uint32_t requestId, const CAudioPresetBank& bank) = 0;

protected:
    CParamInterfaceRegistryListener() = default;
    CParamInterfaceRegistryListener(const CParamInterfaceRegistryListener&) = default;
    CParamInterfaceRegistryListener& operator=(const CParamInterfaceRegistryListener&) = default;
};

} // namespace tsm
