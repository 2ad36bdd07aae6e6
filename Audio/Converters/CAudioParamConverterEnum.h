#pragma once

#include "Audio/CParamStateNames.h"
#include "Audio/Converters/CAudioParamConverterRound.h"

namespace tsm {

/// Numbered states with names: the converter's own, behind them those of the parameter.
class CAudioParamConverterEnum : public CAudioParamConverterRound {
public:
    void format(CString& out, const CAudioParamInfo& info, int e, double real,
                EAudioParamFormat mode) const override;
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

protected:
    /// Takes a whole number, or a state's name as one of the formats shows it.
    [[nodiscard]] bool readDisplay(const CAudioParamInfo& info, int e, const CString& text,
                                   double& display) const override;
    /// The step of the initialisation that reads the attribute `state-names`.
    [[nodiscard]] virtual CError* readStateNames();

private:
    CParamStateNames stateNames;
};

} // namespace tsm
