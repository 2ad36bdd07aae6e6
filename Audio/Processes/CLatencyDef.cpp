#include "Audio/Processes/CLatencyDef.h"

#include "Core/COwnedArray.h"
#include "Core/CText.h"

#include <cmath>

namespace tsm {

void CLatencyDef::readLatencies(const CString& text)
{
    COwnedArray<CString> items;
    splitText(text, ';', items);
    for (const CString& item : items) {
        COwnedArray<CString> parts;
        splitText(item, '=', parts);
        CEntry entry{};
        if (parts.getCount() >= 2 && parseWholeInt(parts[0].trimmed(), entry.rateLimit) &&
            parseWholeInt(parts[1].trimmed(), entry.latency) && entry.rateLimit >= 1 &&
            entry.latency >= 0)
            entries.add(entry);
    }
}

std::int32_t CLatencyDef::findLatency(double rate) const noexcept
{
    const double rounded = std::round(rate);
    for (const CEntry& entry : entries)
        if (rounded <= entry.rateLimit)
            return entry.latency;
    return -1;
}

} // namespace tsm
