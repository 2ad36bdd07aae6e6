#include "Tools/monitor/CMeterReport.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

#include <sys/wait.h>

namespace tsm {
namespace {

// Apart for readers with impaired color vision too (Okabe and Ito, "Color universal design", 2008).
constexpr const char* kColors[] = {"#0072b2", "#d55e00", "#009e73", "#cc79a7"};
constexpr double kFloorDb = -100.0;

double toDb(double level)
{
    return level > 0.0 ? std::max(20.0 * std::log10(level), kFloorDb) : kFloorDb;
}

std::string numbers(const char* format, double a, double b, double c)
{
    char text[128];
    std::snprintf(text, sizeof text, format, a, b, c);
    return text;
}

/// A text for gnuplot, in which a quote stands for itself when it is doubled.
std::string quoted(const std::string& text)
{
    std::string all = "'";
    for (const char c : text)
        all += c == '\'' ? std::string("''") : std::string(1, c);
    return all + "'";
}

using CChannels = std::map<std::uint32_t, std::string>; // rows of time, rms and peak

std::map<std::string, CChannels> rowsByMeter(const std::vector<CMeterReading>& readings)
{
    std::map<std::string, CChannels> meters;
    for (const CMeterReading& reading : readings)
        meters[reading.meter][reading.channel] +=
            numbers("%.9g %.6g %.6g\n", reading.time, toDb(reading.rms), toDb(reading.peak));
    return meters;
}

std::string blockName(std::size_t meter, std::uint32_t channel)
{
    return "$m" + std::to_string(meter) + "c" + std::to_string(channel);
}

/// One panel: two lines a channel.
std::string panel(const std::string& meter, std::size_t index, const CChannels& channels)
{
    std::string script = "set title " + quoted(meter) + "\nplot ";
    std::size_t line = 0;
    for (const auto& [channel, rows] : channels) {
        const std::string color =
            std::string(" linecolor rgb '") + kColors[line++ % std::size(kColors)] + "'";
        const std::string name = "channel " + std::to_string(channel);
        script += (line > 1 ? ", " : "") + blockName(index, channel) +
                  " using 1:2 with lines linewidth 1.6" + color + " title " +
                  quoted(name + " rms") + ", " + blockName(index, channel) +
                  " using 1:3 with lines linewidth 1.2 dashtype 2" + color + " title " +
                  quoted(name + " peak");
    }
    return script + "\n";
}

std::string plotScript(const std::vector<CMeterReading>& readings, const std::string& path)
{
    const auto meters = rowsByMeter(readings);
    std::string data;
    std::string panels;
    std::size_t index = 0;
    for (const auto& [meter, channels] : meters) {
        for (const auto& [channel, rows] : channels)
            data += blockName(index, channel) + " << EOD\n" + rows + "EOD\n";
        panels += panel(meter, index, channels);
        ++index;
    }
    return data +
           "set encoding utf8\n"
           "set terminal pngcairo noenhanced font 'DejaVu Sans,11' size 1280," +
           std::to_string(100 + 400 * meters.size()) + "\nset output " + quoted(path) +
           "\nset border linecolor rgb '#606060'\n"
           "set grid linetype 1 linecolor rgb '#d0d0d0' linewidth 0.7\n"
           "set tics out nomirror\nset lmargin 11\n"
           "set key outside right top Left reverse samplen 2\n"
           "set xlabel 'time / s'\nset ylabel 'level / dB'\n"
           "set multiplot layout " +
           std::to_string(meters.size()) + ",1\n" + panels + "unset multiplot\n";
}

} // namespace

std::string CMeterReport::csv() const
{
    std::vector<CMeterReading> rows = readings;
    std::stable_sort(rows.begin(), rows.end(), [](const CMeterReading& a, const CMeterReading& b) {
        return a.time < b.time;
    });
    std::string text = "time,meter,channel,rms,peak\n";
    for (const CMeterReading& reading : rows) {
        char row[160];
        std::snprintf(row, sizeof row, "%.17g,%s,%u,%.17g,%.17g\n", reading.time,
                      reading.meter.c_str(), reading.channel, reading.rms, reading.peak);
        text += row;
    }
    return text;
}

CError* CMeterReport::plot(const std::string& path) const
{
    if (readings.empty())
        TSM_FAIL("the meters have sent nothing that could be drawn");
    const std::string script = plotScript(readings, path);
    // NOLINTNEXTLINE(cert-env33-c): a program by its name, without anything of the user's
    FILE* const gnuplot = popen("gnuplot", "w");
    if (!gnuplot)
        TSM_FAIL("gnuplot can't be started");
    const bool isWritten = std::fwrite(script.data(), 1, script.size(), gnuplot) == script.size();
    const int status = pclose(gnuplot);
    if (!isWritten || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        TSM_FAIL("gnuplot can't draw '%1'", CString::fromUtf8(path));
    return nullptr;
}

} // namespace tsm
