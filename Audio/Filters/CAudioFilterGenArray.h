#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tsm {

/// A choice of generators by index; its children are `CAudioFilterGenArrayItem`s.
class CAudioFilterGenArray : public CObject {
public:
    /// The generator of the item with that index, or null. Borrowed. [any]
    [[nodiscard]] CAudioFilterGen* getItem(int index) const;
    static void declareClass(CObjectClassInfo& info);
};

} // namespace tsm
