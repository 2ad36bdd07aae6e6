#include "Tools/monitor/CMonitorScreen.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>

#include <unistd.h>

namespace tsm {
namespace {

constexpr int kBarWidth = 48;

double toDb(double level)
{
    constexpr double kLeast = 1e-9;
    return 20.0 * std::log10(std::max(level, kLeast));
}

} // namespace

CMonitorScreen::CMonitorScreen() : isTerminal(isatty(STDERR_FILENO) == 1) {}

CMonitorScreen::~CMonitorScreen()
{
    if (linesDrawn > 0)
        std::cerr << std::flush;
}

void CMonitorScreen::setReading(const CMeterReading& reading)
{
    readings[{reading.meter, reading.channel}] = reading;
}

void CMonitorScreen::removeReadings(const std::string& meter)
{
    std::erase_if(readings, [&](const auto& entry) { return entry.first.first == meter; });
}

void CMonitorScreen::addChange(const std::string& text)
{
    changes.push_back(text);
    if (changes.size() > kChangeLines)
        changes.pop_front();
}

std::string CMonitorScreen::bar(double rms, double peak, double lowDb, double highDb, int width)
{
    const auto place = [&](double level) {
        const double part = (toDb(level) - lowDb) / (highDb - lowDb);
        return static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * width));
    };
    std::string places(static_cast<std::size_t>(width), ' ');
    std::fill_n(places.begin(), place(rms), '#');
    if (const int held = place(peak); held > 0)
        places[static_cast<std::size_t>(held - 1)] = '|';
    char levels[64];
    std::snprintf(levels, sizeof levels, "] %6.1f dB, peak %6.1f dB", toDb(rms), toDb(peak));
    return "[" + places + levels;
}

std::string CMonitorScreen::picture(double seconds) const
{
    char time[32];
    std::snprintf(time, sizeof time, "%8.2f s\n", seconds);
    std::string text = time;
    for (const auto& [key, reading] : readings) {
        // A ratio lies about 0 dB, a level below.
        const bool isRatio = key.first.find("Diff") != std::string::npos;
        char name[48];
        std::snprintf(name, sizeof name, "%-15.15s%2u ", key.first.c_str(), key.second);
        text += name +
                bar(reading.rms, reading.peak, isRatio ? -24.0 : -60.0, isRatio ? 24.0 : 6.0,
                    kBarWidth) +
                "\n";
    }
    text += "history " + history + "\n";
    for (const std::string& change : changes)
        text += "  " + change + "\n";
    return text;
}

void CMonitorScreen::draw(double seconds)
{
    if (!isTerminal)
        return;
    std::string text;
    if (linesDrawn > 0)
        text = "\x1b[" + std::to_string(linesDrawn) + "A\x1b[J"; // up, and the rest is wiped
    const std::string drawn = picture(seconds);
    linesDrawn = static_cast<int>(std::count(drawn.begin(), drawn.end(), '\n'));
    std::cerr << text << drawn << std::flush;
}

} // namespace tsm
