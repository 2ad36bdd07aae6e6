#include "Audio/CAudioParamInfo.h"
#include "Audio/CAudioParamStorage.h"
#include "Audio/Converters/CAudioParamConverter.h"
#include "Core/CText.h"

namespace tsm {

CError* CAudioParamStorage::parseDefValues(const CAudioParamInfo& info, const CString& defText)
{
    reset(info.shape);
    // No number stands for nothing, but the empty text is a text.
    if (!holdsItems() && defText.trimmed().isEmpty())
        return nullptr;
    COwnedArray<CString> groupTexts;
    splitText(defText, ';', groupTexts);
    for (int i = 0; i < groupTexts.getCount(); ++i) {
        CAudioParamChange change;
        change.group = i == 0 ? kAllParamGroups : i;
        change.complete = true;
        change.shape = shape;
        TSM_TRY(parseGroup(info, groupTexts[i], change));
        if (!apply(change))
            TSM_FAIL("@tsmstr_CAudioParamStorage_parseDefValues_Error "
                     "Default values parsing error.");
    }
    return nullptr;
}

CError* CAudioParamStorage::parseGroup(const CAudioParamInfo& info, const CString& groupText,
                                       CAudioParamChange& change) const
{
    COwnedArray<CString> elements;
    splitText(groupText, ',', elements);
    for (int i = 0; i < elements.getCount(); ++i) {
        if (shape.dataType == EAudioParamType::String)
            change.addItem(CPtr<CAudioParamDataItem>(new CAudioParamDataItemString(elements[i])));
        else if (shape.dataType == EAudioParamType::Raw)
            change.addItem(CAudioParamDataItem::create(EAudioParamType::Raw));
        else
            TSM_TRY(parseElement(info, elements[i], i, change));
    }
    return nullptr;
}

CError* CAudioParamStorage::parseElement(const CAudioParamInfo& info, const CString& elementText,
                                         int place, CAudioParamChange& change) const
{
    COwnedArray<CString> pieces;
    const CString trimmed = elementText.trimmed();
    if (shape.elementSize == 1)
        pieces.create(trimmed);
    else
        splitWords(trimmed, pieces);
    if (!trimmed.isEmpty() && pieces.getCount() < shape.elementSize)
        TSM_FAIL("@tsmstr_CAudioParamStorage_parseDefValues_NoElements "
                 "Not enough default elements at pos %1.",
                 toString(place));
    for (int e = 0; e < shape.elementSize; ++e) {
        bool ok = true;
        double value = 0.0;
        if (!trimmed.isEmpty())
            value = info.getConverter(e).parseUnclamped(info, e, pieces[e], ok);
        if (!ok)
            TSM_FAIL("@tsmstr_CAudioParamStorage_parseDefValues_Error "
                     "Default values parsing error.");
        change.values.add(value);
    }
    ++change.elementCount;
    return nullptr;
}

} // namespace tsm
