#pragma once

#include "Core/CError.h"

#include <cstdio>
#include <cstdlib>

namespace tsm {

/// Ends the program on an error, told on stderr: a benchmark of something else would be none.
inline void check(CError* error)
{
    if (!error)
        return;
    std::fprintf(stderr, "%s\n", error->getMessage().toUtf8().c_str());
    std::abort();
}

} // namespace tsm
