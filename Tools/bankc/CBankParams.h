#pragma once

#include "Audio/CAudioParamInfo.h"
#include "Core/CApplication.h"

#include <filesystem>

namespace tsm {

/// The product's parameter definitions, from its compiled document; of the document's other objects
/// only attributes exist here, so that no resource of the product is needed.
class CBankParams {
public:
    /// Errors: a document that can't be read.
    [[nodiscard]] CError* load(const std::filesystem::path& document);

    /// The definition of a parameter at a full name such as "audio.modMain.oversampling", or null
    /// when there is none whose values presets may hold.
    [[nodiscard]] const CAudioParamInfo* find(const CString& fullName) const;
    /// Describes a number that the product doesn't define, with limits in display form. Errors: a
    /// limit that is no number, or a range without width.
    [[nodiscard]] CError* describeBare(CAudioParamInfo& info, const CString& fullName,
                                       const CString& minText, const CString& maxText) const;

private:
    CApplication application;
};

} // namespace tsm
