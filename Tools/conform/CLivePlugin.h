#pragma once

#include "Tools/conform/CBlockRun.h"
#include "Tools/conform/CPlugin.h"
#include "Tools/hostlib/CVstParams.h"

#include <optional>

namespace tsm {

/// A value for one parameter, normalized.
struct CParamValue {
    Steinberg::Vst::ParamID id = 0;
    double value = 0.0;
};

/// An instance that processes, with its parameters, as a host holds one.
class CLivePlugin {
public:
    /// Errors: those of the instance.
    [[nodiscard]] CError* start(const CPlugin& plugin, const CVstSetUp& wanted, CFindings& findings,
                                bool isInPlace = false);

    [[nodiscard]] CVstInstance& getInstance() { return instance; }
    [[nodiscard]] const CVstParams& getParams() const { return *params; }
    [[nodiscard]] CBlockRun& getRun() { return *run; }

    /// Sets the value on both sides, as hosts do: shown at once, heard from the next call on.
    void set(const CParamValue& value);
    /// Sets all and hands them over in a call without samples.
    void setAll(const std::vector<CParamValue>& values);
    /// The present values of the parameters that are the user's own.
    [[nodiscard]] std::vector<CParamValue> getAll() const;

    /// A random value for each of the user's own parameters, the bypass off; on their steps.
    [[nodiscard]] std::vector<CParamValue> drawValues(unsigned seed) const;

private:
    CVstInstance instance;
    std::optional<CVstParams> params;
    std::optional<CBlockRun> run;
};

/// Whether a parameter is set by users one by one: neither read-only nor a choice of programs.
[[nodiscard]] bool isUsersOwn(const CVstParam& param);

} // namespace tsm
