#pragma once

namespace tsm {

/// One row of the table of what is built into the program.
struct CResourceEntry {
    /// 32-bit little-endian size, then that many bytes; 16-byte aligned. Null ends the table.
    const unsigned char* data;
    const char* name; // zero-terminated; names are matched exactly
};

/// All resources of the program, in constant data, ended by a row of nulls. [any]
extern const CResourceEntry kResourceTable[];

} // namespace tsm
