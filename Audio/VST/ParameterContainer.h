#pragma once

#include "Audio/VST/Parameter.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace Steinberg::Vst {

/// The parameters of a controller in order of their addition, found by index and by identifier.
/// Changed only in initialize() and terminate(); look-ups then are for any thread.
class ParameterContainer {
public:
    /// Takes the parameter and returns it. By identifier it hides an earlier one of the same.
    Parameter* addParameter(std::unique_ptr<Parameter> parameter);
    /// Adds a plain parameter of this description.
    Parameter* addParameter(const ParameterInfo& info);
    void removeAll();

    [[nodiscard]] int32 getParameterCount() const { return static_cast<int32>(parameters.size()); }
    /// Null when there is none.
    [[nodiscard]] Parameter* getParameterByIndex(int32 index) const;
    [[nodiscard]] Parameter* getParameter(ParamID id) const;

private:
    std::vector<std::unique_ptr<Parameter>> parameters;
    std::unordered_map<ParamID, Parameter*> byId;
};

} // namespace Steinberg::Vst
