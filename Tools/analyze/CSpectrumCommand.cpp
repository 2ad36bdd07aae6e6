#include "Tools/analyze/CSpectrumCommand.h"

#include "Tools/analyze/CBandSpectrum.h"
#include "Tools/analyze/CMusicSlices.h"
#include "Tools/analyze/CToneMeasure.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <numeric>

namespace tsm {

namespace {

std::vector<double> harmonicNumbers()
{
    std::vector<double> numbers(CToneMeasure::kHarmonicCount);
    std::iota(numbers.begin(), numbers.end(), 1.0);
    return numbers;
}

std::vector<double> harmonicLevels(const CSoundBuffer& sine)
{
    std::vector<double> levels;
    for (const double power : CToneMeasure::of(sine, kMusicSineHz).powers)
        levels.push_back(std::max(10.0 * std::log10(power), CBandSpectrum::kFloorDb));
    return levels;
}

std::vector<double> levelsOf(const CSoundBuffer& sound, const CAnalyzeOptions& options)
{
    if (!options.musicSeconds)
        return CBandSpectrum::levels(sound);
    if (options.isHarmonics)
        return harmonicLevels(steadySine(sound, *options.musicSeconds));
    // The sine would stand out of all the rest.
    return CBandSpectrum::levels(
        sliceOfSection(sound, *options.musicSeconds, EMusicSection::All, 0.0));
}

/// A column's name between double quotes, which it can't hold itself.
std::string quote(std::string label)
{
    std::ranges::replace(label, '"', '\'');
    return '"' + label + '"';
}

bool write(const CAnalyzeOptions& options, const std::vector<double>& positions,
           const std::vector<std::vector<double>>& columns)
{
    std::ofstream out(options.output);
    out << quote(options.isHarmonics ? "harmonic" : "frequency Hz");
    for (const CLabelledFile& file : options.files)
        out << ' ' << quote(file.label);
    for (std::size_t i = 0; i < positions.size(); ++i) {
        out << '\n' << positions[i];
        for (const std::vector<double>& column : columns)
            out << ' ' << column[i];
    }
    out << '\n';
    out.close();
    return !out.fail();
}

} // namespace

bool runSpectrumCommand(const CAnalyzeOptions& options, std::string& error)
{
    std::vector<std::vector<double>> columns;
    for (const CLabelledFile& file : options.files) {
        CSoundBuffer sound;
        if (!CSoundBuffer::read(file.path, sound, error))
            return false;
        columns.push_back(levelsOf(sound, options));
    }
    if (write(options, options.isHarmonics ? harmonicNumbers() : CBandSpectrum::centers(), columns))
        return true;
    error = options.output.string() + ": can't be written";
    return false;
}

} // namespace tsm
