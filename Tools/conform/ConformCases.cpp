#include "Tools/conform/ConformCases.h"

#include <fnmatch.h>

namespace tsm {

namespace {

bool matches(const std::string& name, const std::string& pattern)
{
    if (pattern.find_first_of("*?[") == std::string::npos)
        return name.find(pattern) != std::string::npos;
    return fnmatch(pattern.c_str(), name.c_str(), 0) == 0;
}

} // namespace

std::vector<CConformCase> findConformCases(const std::string& pattern)
{
    std::vector<CConformCase> found;
    for (const auto area : {moduleCases, factoryCases, objectCases, viewCases, busCases, lifeCases,
                            parameterCases, unitCases, stateCases, processCases, inputCases,
                            automationCases, timingCases, threadCases, resourceCases})
        for (const CConformCase& each : area())
            if (matches(each.name, pattern))
                found.push_back(each);
    return found;
}

} // namespace tsm
