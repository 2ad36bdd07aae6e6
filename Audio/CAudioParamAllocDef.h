#pragma once

#include "Core/CObject.h"

namespace tsm {

/// Gives a parameter a slot in the modules of a process. Tag `audio:param-alloc`.
class CAudioParamAllocDef : public CObject {
public:
    /// Errors: no name, a negative index or one above kMaxIndex.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info) { CObject::declareClass(info); }

    static constexpr std::int32_t kMaxIndex = 255;

    /// The parameter's name, relative to the process.
    [[nodiscard]] const CString& getParamName() const noexcept { return paramName; }
    /// The slot, from 0 on.
    [[nodiscard]] std::int32_t getIndex() const noexcept { return index; }
    /// Modules react to a change in any group, not only their own.
    [[nodiscard]] bool getUseAllGroups() const noexcept { return useAllGroups; }
    [[nodiscard]] bool getUseAllElements() const noexcept { return useAllElements; }
    /// A change goes to a fresh module that is crossfaded to.
    [[nodiscard]] bool getIsSmoothUpdate() const noexcept { return isSmoothUpdate; }

private:
    CString paramName;
    std::int32_t index = 0;
    bool useAllGroups = false;
    bool useAllElements = false;
    bool isSmoothUpdate = false;
};

} // namespace tsm
