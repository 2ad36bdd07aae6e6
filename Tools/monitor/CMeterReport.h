#pragma once

#include "Core/CError.h"
#include "Tools/monitor/CMeterReading.h"

#include <string>
#include <vector>

namespace tsm {

/// All that the meters have sent, as a table or as a picture.
class CMeterReport {
public:
    void add(const CMeterReading& reading) { readings.push_back(reading); }

    /// The columns time, meter, channel, rms and peak, in order of the times; numbers with 17
    /// digits, from which they can be read back as they were.
    [[nodiscard]] std::string csv() const;
    /// Has gnuplot draw level over time, a panel for each meter. Errors: nothing to draw, gnuplot
    /// isn't there or can't write the file.
    [[nodiscard]] CError* plot(const std::string& path) const;

private:
    std::vector<CMeterReading> readings;
};

} // namespace tsm
