#include "Core/CFileMask.h"

namespace tsm {

bool matchesMask(const CString& name, const CString& mask) noexcept
{
    int at = 0;
    int place = 0;
    int lastStar = -1;   // where matching goes on after a mismatch
    int lastStarEnd = 0; // what that star covers ends here
    while (at < name.getLength()) {
        if (place < mask.getLength() && mask[place] == '*') {
            lastStar = place++;
            lastStarEnd = at;
        } else if (place < mask.getLength() && (mask[place] == '?' || mask[place] == name[at])) {
            ++place;
            ++at;
        } else if (lastStar >= 0) {
            // Only the last star needs to take more: what stands before it matches already.
            place = lastStar + 1;
            at = ++lastStarEnd;
        } else {
            return false;
        }
    }
    while (place < mask.getLength() && mask[place] == '*')
        ++place;
    return place == mask.getLength();
}

bool matchesAnyMask(const CString& name, const COwnedArray<CString>& masks) noexcept
{
    for (const CString& mask : masks)
        if (matchesMask(name, mask))
            return true;
    return false;
}

} // namespace tsm
