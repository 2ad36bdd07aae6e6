#pragma once

#include "Audio/CAudioParamInfo.h"
#include "Core/CObject.h"

namespace tsm {

/// A parameter as a document defines it.
class CAudioParamDef : public CObject {
public:
    /// Errors: a bad element size, converters, limits, state names or defaults.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

    /// What the definition says; it lives as long as the tree. [any]
    [[nodiscard]] const CAudioParamInfo& getInfo() const noexcept { return paramInfo; }
    /// True when the collector gets the parameter from this definition; any other is a default of
    /// the module at whose path it stands. [any]
    [[nodiscard]] bool hasStorage() const noexcept { return paramInfo.isGlobal; }

private:
    [[nodiscard]] CError* readShape();
    void readFlags();
    [[nodiscard]] CError* readConverters();

    CAudioParamInfo paramInfo;
};

} // namespace tsm
