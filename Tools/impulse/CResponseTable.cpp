#include "Tools/impulse/CResponseTable.h"

#include <cmath>
#include <complex>
#include <cstdio>
#include <numbers>

namespace tsm {
namespace {

constexpr double kLowestHz = 10.0;
constexpr double kHighestHz = 20000.0;
constexpr double kReferenceHz = 1000.0;

std::string number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", value);
    return text;
}

} // namespace

CResponseTable::CResponseTable()
{
    for (std::size_t i = 0; i < kLineCount; ++i) {
        const double share = static_cast<double>(i) / (kLineCount - 1);
        frequencies.push_back(kLowestHz * std::pow(kHighestHz / kLowestHz, share));
        lines.push_back(number(frequencies.back()));
    }
}

void CResponseTable::add(const CImpulseSpec& spec, const std::vector<double>& samples)
{
    heading += " \"" + spec.name + "\"";
    const double reference = magnitudeAt(samples, spec.rate, kReferenceHz);
    for (std::size_t i = 0; i < kLineCount; ++i) {
        const double ratio = magnitudeAt(samples, spec.rate, frequencies[i]) / reference;
        lines[i] += " " + number(20.0 * std::log10(ratio));
    }
}

std::string CResponseTable::getText() const
{
    std::string text = heading + "\n";
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

double CResponseTable::magnitudeAt(const std::vector<double>& samples, double rate, double hz)
{
    // Horner's scheme, the last sample first.
    const std::complex<double> step = std::polar(1.0, -2.0 * std::numbers::pi * hz / rate);
    std::complex<double> sum = 0.0;
    for (std::size_t i = samples.size(); i > 0; --i)
        sum = sum * step + samples[i - 1];
    return std::abs(sum);
}

} // namespace tsm
