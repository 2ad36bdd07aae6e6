#pragma once

#include "Core/CError.h"
#include "Tools/oversampling/CChainProbe.h"

#include <string>
#include <vector>

namespace tsm {

/// What oversampling does at each factor and filter, measured on instances of the engine.
class COversamplingReport {
public:
    /// Measures all; takes some seconds. The application runs. Errors: those of the instances.
    [[nodiscard]] CError* measure();

    /// Both tables with a text, in Markdown.
    [[nodiscard]] std::string toMarkdown() const;
    /// The aliasing for plots: a line of heads, then a line a choice, its name and the level for
    /// each tone in dB.
    [[nodiscard]] std::string toPlotData() const;

private:
    struct CLatencyRow {
        COversamplingChoice choice;
        double real = 0.0; // samples, as measured
        int reported = 0;
    };
    struct CAliasRow {
        COversamplingChoice choice;
        std::vector<double> levels; // dB, by tone
    };

    [[nodiscard]] CError* measureLatency(const COversamplingChoice& choice);
    [[nodiscard]] CError* measureAliasing(const COversamplingChoice& choice);

    std::vector<CLatencyRow> latencies;
    std::vector<CAliasRow> aliases;
};

} // namespace tsm
