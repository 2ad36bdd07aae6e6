#include "Audio/CCosineFade.h"

#include <cmath>

namespace tsm {

void CCosineFade::start(double step, double before) noexcept
{
    value = 0.5;
    previous = before;
    twoCos = 2.0 * std::cos(step);
}

} // namespace tsm
