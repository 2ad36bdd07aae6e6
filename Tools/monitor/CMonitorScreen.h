#pragma once

#include "Tools/monitor/CMeterReading.h"

#include <deque>
#include <map>
#include <string>
#include <utility>

namespace tsm {

/// The terminal, on standard error: a bar for each meter's channel with its held peak, the history
/// of edits, and the parameters that changed last, drawn over each other. Silent when it is no
/// terminal.
class CMonitorScreen {
public:
    CMonitorScreen();
    /// Leaves what was drawn last.
    ~CMonitorScreen();
    CMonitorScreen(const CMonitorScreen&) = delete;
    CMonitorScreen& operator=(const CMonitorScreen&) = delete;

    void setReading(const CMeterReading& reading);
    /// A meter's levels hold no longer: its bars go.
    void removeReadings(const std::string& meter);
    void setHistory(const std::string& text) { history = text; }
    void addChange(const std::string& text);
    void draw(double seconds);

    /// "[######    |   ] -12.3 dB, peak -6.0 dB": a bar of `width` places between two levels.
    [[nodiscard]] static std::string bar(double rms, double peak, double lowDb, double highDb,
                                         int width);

private:
    static constexpr std::size_t kChangeLines = 4;

    [[nodiscard]] std::string picture(double seconds) const;

    bool isTerminal;
    int linesDrawn = 0;
    std::map<std::pair<std::string, std::uint32_t>, CMeterReading> readings;
    std::string history;
    std::deque<std::string> changes;
};

} // namespace tsm
