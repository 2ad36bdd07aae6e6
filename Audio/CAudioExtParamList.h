#pragma once

#include "Audio/CAudioExtParam.h"

namespace tsm {

/// The parameters that the host sees, in the document's order; the place of one is its number with
/// the host. Tag `audio:ext-param-list`.
class CAudioExtParamList : public CObject {
public:
    /// Collects the children.
    [[nodiscard]] CError* initChilds() override;
    static void declareClass(CObjectClassInfo& info);

    [[nodiscard]] int getCount() const noexcept { return params.getCount(); }
    CAudioExtParam& operator[](int index) const noexcept { return *params[index]; }

private:
    CArray<CAudioExtParam*> params;
};

} // namespace tsm
