#pragma once

#include "Audio/CAudioParamInfo.h"
#include "Other/CParamInterfaceParamListener.h"

namespace tsm {

/// A client's own copy of one parameter: what it is, and its values as far as they have arrived.
/// Belongs to the client's thread.
class CParamMirror : public CParamInterfaceParamListener {
public:
    /// `converterFinder` is borrowed: converters are looked up from there.
    explicit CParamMirror(CObject& converterFinder) noexcept : finder(converterFinder) {}

    [[nodiscard]] CError* onInfo(CInputStream& stream) override;
    /// Changes of another shape are ignored.
    void onChange(CAudioParamChange& change) override;

    /// The description, or null.
    [[nodiscard]] const CAudioParamInfo* getInfo() const noexcept { return info.get(); }
    [[nodiscard]] const CAudioParamStorage& getValues() const noexcept { return values; }

private:
    CObject& finder;
    CPtr<CAudioParamInfo> info;
    CAudioParamStorage values;
};

} // namespace tsm
