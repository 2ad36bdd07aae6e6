#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tsm {

/// Changes of parameters at samples of a sound, handed out block by block.
class CParamTimeline {
public:
    struct CPoint {
        std::int64_t frame;
        int index; // of the parameter, as its user counts them
        double value;
    };

    void add(double seconds, int rate, int index, double value)
    {
        // Beyond 2^53 samples a point never comes, whatever its exact place.
        const double frame = std::min(std::round(seconds * rate), 0x1p53);
        points.push_back({static_cast<std::int64_t>(frame), index, value});
    }
    /// Ends the additions; points of one sample keep the order in which they came.
    void sort()
    {
        std::stable_sort(points.begin(), points.end(),
                         [](const CPoint& a, const CPoint& b) { return a.frame < b.frame; });
    }
    [[nodiscard]] std::size_t getCount() const { return points.size(); }

    /// Calls `use` with each point that lies before `end` and was not handed out before.
    template <class Use>
    void takeUntil(std::int64_t end, const Use& use)
    {
        for (; next < points.size() && points[next].frame < end; ++next)
            use(points[next]);
    }

private:
    std::vector<CPoint> points;
    std::size_t next = 0;
};

} // namespace tsm
