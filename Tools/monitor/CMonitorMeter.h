#pragma once

#include "Audio/CVizListener.h"
#include "Core/CString.h"
#include "Tools/monitor/CMeterReading.h"

#include <functional>
#include <string>

namespace tsm {

/// A client's ear for one meter, which makes readings of its records.
class CMonitorMeter : public CVizListener {
public:
    using CTell = std::function<void(const CMeterReading&)>;
    using CTellSilence = std::function<void(const std::string& meter)>;

    /// `fullName` is the process's; its last part is the meter's name in readings.
    CMonitorMeter(const CString& fullName, CTell tellReading, CTellSilence tellInactive);

    void onData(const CAudioVizData& record) override;
    void onInactive() override;

private:
    std::string name;
    CTell tell;
    CTellSilence tellSilence;
};

} // namespace tsm
