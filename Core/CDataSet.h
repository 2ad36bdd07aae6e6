#pragma once

#include "Core/CPosInputStream.h"

namespace tsm {

/// Base of data that are loaded by the name of a resource or file.
class CDataSet : public CCheckedObject {
public:
    virtual ~CDataSet() = default;

    /// Reads the data from where `stream` stands.
    [[nodiscard]] virtual CError* loadFrom(CPosInputStream& stream) = 0;

    /// Opens the resource, or else the file, of that name and loads from it.
    /// Errors: no such name, those of the load.
    [[nodiscard]] CError* loadResource(const CString& name);
};

} // namespace tsm
