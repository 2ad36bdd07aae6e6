#pragma once

#include "Other/CParamMirror.h"

#include <functional>
#include <string>

namespace tsm {

/// The client's view of one parameter, which tells when it changes.
class CMonitorParam : public CParamMirror {
public:
    using CTell = std::function<void(const CMonitorParam&)>;

    /// `shownName` is the name below the main process.
    CMonitorParam(CObject& converterFinder, const CString& shownName, CTell tellChange)
        : CParamMirror(converterFinder), name(shownName), tell(std::move(tellChange))
    {
    }

    void onChange(CAudioParamChange& change) override;

    [[nodiscard]] const CString& getName() const noexcept { return name; }
    /// "Recording gain", or the name where there is none for users.
    [[nodiscard]] CString getTitle() const;
    /// The first value in display form.
    [[nodiscard]] std::string getText() const;
    /// A change of the first value to a text in display form. Errors: a text that isn't one of the
    /// parameter's values, a parameter of another kind.
    [[nodiscard]] CError* makeChange(const CString& text, CAudioParamChange& change) const;

    std::uint32_t listenerId = 0;

private:
    CString name;
    CTell tell;
};

} // namespace tsm
