#include "rsk/CDSPInputLine.h"

#include "rsk/DSPKernels.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace tsm::rsk {

namespace {

// Samples that go in before the past is moved to the front again.
constexpr int kSlack = 1024;

void move(double* to, const double* from, int count)
{
    std::memmove(to, from, static_cast<std::size_t>(count) * sizeof(double));
}

} // namespace

void CDSPInputLine::fit(int newPast)
{
    if (newPast == past)
        return;
    CAlignedArray<double> fitted(newPast + kSlack + kKernelPad);
    const int kept = std::min(past, newPast);
    if (kept > 0)
        move(fitted.data() + newPast - kept, newest(kept), kept);
    room.swap(fitted);
    past = end = newPast;
}

void CDSPInputLine::clear() noexcept
{
    room.clear();
    end = past;
}

void CDSPInputLine::append(const double* in, int count) noexcept
{
    const int used = std::min(count, past);
    if (end + used > past + kSlack) {
        move(room.data(), newest(past) + used, past - used);
        end = past - used;
    }
    move(room.data() + end, in + count - used, used);
    end += used;
    std::fill_n(room.data() + end, kKernelPad, 0.0);
}

const double* CDSPInputLine::newest(int count) const noexcept
{
    assert(count <= past);
    return room.data() + end - count;
}

} // namespace tsm::rsk
