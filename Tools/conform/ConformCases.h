#pragma once

#include "Core/CError.h"

#include <span>
#include <string>
#include <vector>

namespace tsm {

class CFindings;
class CPlugin;

/// One check of a plug-in, run in a process of its own.
struct CConformCase {
    const char* name;  // "area.subject"
    const char* about; // what hosts rely on
    /// Finds what it can. An error ends the case as a failure.
    CError* (*run)(CPlugin& plugin, CFindings& findings);
    int limitFactor = 1; // times the limit of an ordinary case
};

/// The cases of each area.
std::span<const CConformCase> moduleCases();
std::span<const CConformCase> factoryCases();
std::span<const CConformCase> objectCases();
std::span<const CConformCase> viewCases();
std::span<const CConformCase> busCases();
std::span<const CConformCase> lifeCases();
std::span<const CConformCase> parameterCases();
std::span<const CConformCase> unitCases();
std::span<const CConformCase> stateCases();
std::span<const CConformCase> processCases();
std::span<const CConformCase> inputCases();
std::span<const CConformCase> automationCases();
std::span<const CConformCase> timingCases();
std::span<const CConformCase> threadCases();
std::span<const CConformCase> resourceCases();

/// All of them that match, in order. A pattern with `*`, `?` or `[` is one of the shell's for the
/// whole name, any other a piece of the name; an empty one matches all.
[[nodiscard]] std::vector<CConformCase> findConformCases(const std::string& pattern);

} // namespace tsm
