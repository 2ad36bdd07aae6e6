#include "Tools/defc/CDefProblems.h"

namespace tsm {

void CDefProblems::add(const CDefPlace& place, const std::string& message)
{
    lines.push_back(place.file + ":" + std::to_string(place.line) + ": " + message);
}

} // namespace tsm
