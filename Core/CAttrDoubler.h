#pragma once

#include "Core/CObject.h"
#include "Core/COwnedArray.h"

namespace tsm {

/// Writes its attribute `value`, a link as a rule, to the attribute `attr` of other objects,
/// whenever it changes. Tag `core:attr-doubler`; `target` has the objects' paths, divided by
/// blanks.
class CAttrDoubler : public CObject {
public:
    /// Errors: no targets, one that isn't there.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

private:
    [[nodiscard]] CError* onValue(CAttrValue& value);
    [[nodiscard]] CError* writeToTargets(const CAttrValue& value);

    // Looked up anew at each change: an object may go before this one.
    COwnedArray<CString> targets;
    bool isWriting = false;
};

} // namespace tsm
