#pragma once

#include "Audio/VST/Interfaces/IEditController.h"
#include "Core/CError.h"

#include <vector>

namespace tsm {

/// What a host knows of one parameter.
struct CVstParam {
    Steinberg::Vst::ParamID id = Steinberg::Vst::kNoParamId;
    CString title;
    CString units;
    Steinberg::int32 stepCount = 0;
    Steinberg::int32 flags = 0;
    double defaultValue = 0.0; // normalized, as all values here

    [[nodiscard]] bool has(Steinberg::Vst::ParameterInfo::ParameterFlags flag) const
    {
        return (flags & flag) != 0;
    }
};

/// The parameters of a controller (borrowed) by title, their values as texts. [control]
class CVstParams {
public:
    explicit CVstParams(Steinberg::Vst::IEditController& owner);

    [[nodiscard]] const std::vector<CVstParam>& getAll() const { return params; }
    /// Error: no parameter of this title.
    [[nodiscard]] CError* find(const CString& title, const CVstParam*& param) const;
    /// The one that chooses programs; null when there is none.
    [[nodiscard]] const CVstParam* findProgramParam() const;

    /// Error: text that the plug-in can't read, or that it takes for something else: many say yes
    /// to any text and take the nearest value, which the text of that value shows.
    [[nodiscard]] CError* parse(const CVstParam& param, const CString& text, double& value) const;
    [[nodiscard]] CString toText(const CVstParam& param, double value) const;
    [[nodiscard]] double getValue(const CVstParam& param) const;
    void setValue(const CVstParam& param, double value) const;

private:
    Steinberg::Vst::IEditController& controller;
    std::vector<CVstParam> params;
};

} // namespace tsm
