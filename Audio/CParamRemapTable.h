#pragma once

#include "Core/CMap.h"
#include "Core/CString.h"

namespace tsm {

/// The parameter names that one process forwards: names relative to its path, and the full names
/// that stand for them. [setup]
class CParamRemapTable : public CCheckedObject {
public:
    /// Names the path that original names are relative to, and forgets all pairs.
    void begin(const CString& processPath);
    /// Enters a pair; `newName` may be relative to the path (see resolveName). A name that is
    /// entered again gets the later target.
    void add(const CString& origName, const CString& newName);
    /// Replaces a full name that this table forwards; tells whether it did. A process asks its own
    /// table, then that of each process above it, with the name as it has become.
    bool apply(CString& fullName) const;

private:
    CString path;
    CMap<CString, CString> pairs;
};

} // namespace tsm
