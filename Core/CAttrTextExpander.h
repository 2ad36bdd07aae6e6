#pragma once

#include "Core/COwnedArray.h"
#include "Core/CString.h"

namespace tsm {

class CAttrValue;
class CObject;

/// Replaces the {references} in a text that is being written to an attribute.
///
/// `{name?default}` is the attribute `name` of the object or the nearest ancestor that has it; an
/// empty name means the attribute being written. `{@name}` looks at the object alone, `{/path
/// name}` begins the search at another object. `{*/path name}` and `{*child name}` also link: the
/// written attribute follows the other from then on. The last reference of a text is taken first,
/// so that references nest.
class CAttrTextExpander {
public:
    /// The expanded form of `text`, for the attribute `attrName` of `object`. A text whose values
    /// bring in ever new references is left as it stands after kMaxSteps, or before it has grown
    /// by more than kMaxGrowth characters.
    [[nodiscard]] static CString expand(CObject& object, const CString& attrName,
                                        const CString& text);

private:
    CAttrTextExpander(CObject& object, const CString& attrName) : self(object), name(attrName) {}
    [[nodiscard]] CString evaluate(const CString& inner);
    [[nodiscard]] const CAttrValue* findValue(CString reference) const;
    [[nodiscard]] CString makeLink(const CString& reference);
    [[nodiscard]] CObject* findLinkTarget(const CString& token) const;

    static constexpr int kMaxSteps = 256;
    // Attributes that each name the one before twice would double with every line of a document.
    static constexpr int kMaxGrowth = 8192;

    CObject& self;
    const CString& name;
};

} // namespace tsm
