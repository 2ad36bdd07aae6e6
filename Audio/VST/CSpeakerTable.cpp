#include "Audio/VST/CSpeakerTable.h"

namespace tsm {

namespace {

struct CRow {
    int channelCount;
    std::uint64_t arrangement;
};

// From most channels to fewest; the last row serves whatever is asked for.
constexpr CRow kRows[] = {{8, 0x63F}, {7, 0x63B}, {6, 0x3F}, {5, 0x3B},
                          {4, 0x10B}, {3, 0x103}, {2, 0x3},  {1, 0x80000}};

constexpr const char* kLabels[] = {"L",   "R",   "C",   "Lfe", "Ls",   "Rs",  "Lc",
                                   "Rc",  "S",   "Sl",  "Sr",  "Tm",   "Tfl", "Tfc",
                                   "Tfr", "Trl", "Trc", "Trr", "Lfe2", "M",   "B-W",
                                   "B-X", "B-Y", "B-Z", "Tsl", "Tsr",  "Lcs", "Rcs"};
constexpr int kSpeakerBits = 64;

} // namespace

std::uint64_t CSpeakerTable::findArrangement(int channelCount) noexcept
{
    for (const CRow& row : kRows)
        if (row.channelCount <= channelCount)
            return row.arrangement;
    return kRows[std::size(kRows) - 1].arrangement;
}

void CSpeakerTable::listLabels(std::uint64_t arrangement, COwnedArray<CString>& labels)
{
    constexpr int kLabelCount = static_cast<int>(std::size(kLabels));
    for (int bit = 0; bit < kSpeakerBits; ++bit)
        if (arrangement >> bit & 1)
            labels.create() = bit < kLabelCount ? kLabels[bit] : "";
}

} // namespace tsm
