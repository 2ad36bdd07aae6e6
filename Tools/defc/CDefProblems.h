#pragma once

#include "Tools/defc/CDefNode.h"

#include <string>
#include <vector>

namespace tsm {

/// All that is wrong with a document. The compiler goes on behind a problem, so that an author
/// sees every one of them in a single run.
class CDefProblems {
public:
    /// Notes `file:line: message`.
    void add(const CDefPlace& place, const std::string& message);

    bool isEmpty() const { return lines.empty(); }
    const std::vector<std::string>& getLines() const { return lines; }

private:
    std::vector<std::string> lines;
};

} // namespace tsm
