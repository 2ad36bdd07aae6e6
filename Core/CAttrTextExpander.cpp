#include "Core/CAttrTextExpander.h"

#include "Core/CObject.h"
#include "Core/CText.h"

namespace tsm {
namespace {

/// The attribute of the object, or of its nearest ancestor that has it.
const CAttrValue* findUpward(const CObject* object, const CString& name)
{
    for (; object; object = object->getParent())
        if (const CAttrValue* value = object->getAttr(name))
            return value;
    return nullptr;
}

} // namespace

CString CAttrTextExpander::expand(CObject& object, const CString& attrName, const CString& text)
{
    CAttrTextExpander expander(object, attrName);
    CString result = text;
    const int most = text.getLength() + kMaxGrowth;
    for (int step = 0; step < kMaxSteps; ++step) {
        const int open = result.findLast('{');
        if (open < 0 || open == result.getLength() - 1)
            break;
        const int close = result.find('}', open + 1);
        if (close < 0)
            break;
        const CString value = expander.evaluate(result.substring(open + 1, close - open - 1));
        if (value.getLength() > most - (result.getLength() - (close - open + 1)))
            break;
        result = result.substring(0, open) + value + result.substring(close + 1);
    }
    return result;
}

CString CAttrTextExpander::evaluate(const CString& inner)
{
    const int mark = inner.find('?');
    const CString reference = mark < 0 ? inner : inner.substring(0, mark);
    if (reference[0] == '*')
        return makeLink(reference.substring(1));
    const CAttrValue* value = findValue(reference);
    if (value)
        return value->asString();
    return mark < 0 ? CString() : inner.substring(mark + 1);
}

const CAttrValue* CAttrTextExpander::findValue(CString reference) const
{
    const bool isOwnOnly = reference[0] == '@';
    if (isOwnOnly)
        reference = reference.substring(1);
    const CObject* object = &self;
    CString attr = reference;
    if (reference[0] == '/') {
        const int blank = reference.find(' ');
        object =
            self.findObject(blank < 0 ? reference.substring(1) : reference.substring(1, blank - 1));
        attr = blank < 0 ? CString() : reference.substring(blank + 1).trimmed();
    }
    if (!object)
        return nullptr;
    if (attr.isEmpty())
        attr = name;
    return isOwnOnly ? object->getAttr(attr) : findUpward(object, attr);
}

CString CAttrTextExpander::makeLink(const CString& reference)
{
    COwnedArray<CString> tokens;
    splitWords(reference, tokens);
    if (tokens.getCount() < 2)
        return CString();
    CObject* source = findLinkTarget(tokens[0]);
    if (!source || source->getIsReadOnly() || source == &self)
        return CString();
    self.linkAttr(*source, tokens[1], name);
    // A scheme is an object's own affair: it is followed from its first change on.
    const CAttrValue* value = tokens[1] == "scheme" ? nullptr : source->getAttr(tokens[1]);
    return value ? value->asString() : CString();
}

CObject* CAttrTextExpander::findLinkTarget(const CString& token) const
{
    if (token[0] == '/')
        return self.findObject(token.substring(1));
    for (const CObject* object = &self; object; object = object->getParent())
        if (const auto* indices = object->namedChildren.find(token); indices && indices->first())
            return indices->first()->value;
    return nullptr;
}

} // namespace tsm
