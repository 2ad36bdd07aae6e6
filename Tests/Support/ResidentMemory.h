#pragma once

#include <cstdio>

#include <unistd.h>

namespace tsm {

/// Bytes of this process in memory; 0 when the system doesn't tell.
inline double residentBytes()
{
    long pages = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%*d %ld", &pages) != 1)
            pages = 0;
        std::fclose(file);
    }
    return static_cast<double>(pages) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

} // namespace tsm
