#pragma once

#include "Tools/conform/CCaseResult.h"

#include "Core/CError.h"

namespace tsm {

/// The results of a run as a developer reads them, and as programs do.
class CConformReport {
public:
    /// Keeps a result and gives its lines: verdict, then what was expected and what came.
    [[nodiscard]] std::string add(CCaseResult result);
    /// The closing line.
    [[nodiscard]] std::string sum() const;
    [[nodiscard]] bool hasFailed() const { return count(CCaseResult::EVerdict::Fail) > 0; }

    /// Errors: the file can't be written.
    [[nodiscard]] CError* writeJson(const std::string& path, const std::string& pluginPath) const;

private:
    [[nodiscard]] long count(CCaseResult::EVerdict verdict) const;

    std::vector<CCaseResult> results;
};

} // namespace tsm
