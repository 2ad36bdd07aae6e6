#include "Tools/Support/CAutomationText.h"

#include "Core/CText.h"

#include <algorithm>

namespace tsm {

namespace {

CError* parsePoint(const CString& piece, CAutomationPoint& point)
{
    const int colon = piece.find(':');
    if (colon < 0)
        TSM_FAIL("automation point '%1' is not of the form SECONDS:VALUE", piece);
    if (!parseDouble(piece.substring(0, colon).trimmed(), point.seconds) || point.seconds < 0.0)
        TSM_FAIL("automation point '%1' has no valid time", piece);
    point.text = piece.substring(colon + 1).trimmed();
    if (point.text.isEmpty())
        TSM_FAIL("automation point '%1' has no value", piece);
    return nullptr;
}

} // namespace

CError* parseAutomationText(const CString& text, std::vector<CAutomationPoint>& points)
{
    COwnedArray<CString> pieces;
    splitText(text, ',', pieces);
    std::vector<CAutomationPoint> parsed;
    for (const CString& piece : pieces) {
        CAutomationPoint point;
        TSM_TRY(parsePoint(piece.trimmed(), point));
        parsed.push_back(point);
    }
    std::stable_sort(
        parsed.begin(), parsed.end(),
        [](const CAutomationPoint& a, const CAutomationPoint& b) { return a.seconds < b.seconds; });
    points = std::move(parsed);
    return nullptr;
}

} // namespace tsm
