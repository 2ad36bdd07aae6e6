#pragma once

#include "Core/CAppData.h"
#include "Core/CObject.h"

namespace tsm {

/// Ties a parameter of a process to an item of application data, as a document defines it. Such a
/// setting follows the user across instances and sessions without being in any preset.
class CAudioParamSharedStorage : public CObject {
public:
    /// Errors: no parameter, no item, no such store.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

    /// Relative to the process.
    [[nodiscard]] const CString& getParamName() const noexcept { return paramName; }
    [[nodiscard]] const CString& getDataName() const noexcept { return dataName; }
    [[nodiscard]] CAppData& getStore() const noexcept { return *store; }

private:
    CString paramName;
    CString dataName;
    CAppData* store = nullptr;
};

} // namespace tsm
