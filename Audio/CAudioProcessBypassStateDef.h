#pragma once

#include "Audio/CParamRange.h"
#include "Core/CObject.h"

namespace tsm {

/// A state, told by one or two parameters, during which processes and links are absent.
/// Tag `audio:process-bypass-state`.
class CAudioProcessBypassStateDef : public CObject {
public:
    /// Errors: no parameter, a range that can't be read.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info) { CObject::declareClass(info); }

    [[nodiscard]] std::int32_t getId() const noexcept { return id; }
    /// The parameter's name, relative to the enclosing process.
    [[nodiscard]] const CString& getParam() const noexcept { return param; }
    /// The second parameter's name; empty for none.
    [[nodiscard]] const CString& getAndParam() const noexcept { return andParam; }
    /// True when the state is active with these values of the two parameters.
    [[nodiscard]] bool isActive(double value, double andValue) const noexcept;

private:
    [[nodiscard]] bool matches(double value, double andValue) const noexcept;

    std::int32_t id = -1;
    CString param;
    double wanted = 1.0;
    CParamRange range;
    CString andParam;
    double andWanted = 1.0;
    CParamRange andRange;
    bool isInverted = false;
};

} // namespace tsm
