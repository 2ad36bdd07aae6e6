#include "Audio/CDSPModDelay.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cmath>
#include <cstring>
#include <numbers>

namespace tsm {

CDSPModDelay::CDSPModDelay(CAudioBlockPool& blockPool, int blockSize)
    : pool(blockPool), size(blockSize), order(std::countr_zero(static_cast<unsigned>(blockSize)))
{
    assert(std::has_single_bit(static_cast<unsigned>(blockSize)));
}

void CDSPModDelay::setFadeLength(int samples) noexcept
{
    fadeLength = std::max(samples, 1);
}

void CDSPModDelay::setDelay(int samples)
{
    assert(samples >= 0);
    samples = std::min(samples, kMaxDelay);
    if (joinSteps > 0) {
        joinLater(samples);
        return;
    }
    if (fadeSteps > 0) {
        pendingDelay = samples == delay ? -1 : samples;
        return;
    }
    if (samples == delay)
        return;
    if (hasSignal) {
        startFade(samples);
        return;
    }
    delay = oldDelay = samples;
}

void CDSPModDelay::joinSignal(int samples) noexcept
{
    assert(!hasSignal && delay == 0);
    hasSignal = true;
    joined = 0;
    joinLater(std::min(samples, kMaxDelay));
}

void CDSPModDelay::joinLater(int samples) noexcept
{
    pendingDelay = samples > 0 ? samples : -1;
    // At least one more, whose end starts the fade.
    joinSteps = samples > 0 ? std::max(samples - joined, 1) : 0;
}

void CDSPModDelay::startFade(int samples)
{
    const double step = std::numbers::pi / fadeLength;
    oldDelay = delay;
    delay = samples;
    pendingDelay = -1;
    fadeSteps = fadeLength;
    fade.start(step, 0.5 * std::cos(step));
}

void CDSPModDelay::endFade()
{
    oldDelay = delay;
    if (pendingDelay >= 0)
        startFade(std::exchange(pendingDelay, -1));
}

void CDSPModDelay::reset()
{
    ring.clear();
    if (pendingDelay >= 0)
        delay = pendingDelay;
    pendingDelay = -1;
    oldDelay = delay;
    fadeSteps = joinSteps = 0;
    hasSignal = false;
    writePosition = 0;
}

void CDSPModDelay::process(const double* in, double* out, int count)
{
    hasSignal = true;
    for (int done = 0; done < count;) {
        fitRing();
        int slice = std::min(count - done, kMaxSlice);
        slice = sliceAt(writePosition, slice);
        slice = sliceAt(back(delay), slice);
        if (fadeSteps > 0)
            slice = std::min(sliceAt(back(oldDelay), slice), fadeSteps);
        if (joinSteps > 0)
            slice = std::min(slice, joinSteps);
        processSlice(in + done, out + done, slice);
        done += slice;
        if (joinSteps > 0) {
            joined += slice;
            joinSteps -= slice;
            if (joinSteps == 0)
                startFade(pendingDelay);
        }
    }
}

void CDSPModDelay::processSlice(const double* in, double* out, int count)
{
    std::memmove(at(writePosition), in, static_cast<std::size_t>(count) * sizeof(double));
    if (fadeSteps > 0)
        readFading(out, count);
    else
        readPlain(out, count);
    writePosition += count; // at most up to a block's end
    if (writePosition == ring.getCount() << order)
        writePosition = 0;
}

void CDSPModDelay::readPlain(double* out, int count)
{
    std::memcpy(out, at(back(delay)), static_cast<std::size_t>(count) * sizeof(double));
}

void CDSPModDelay::readFading(double* out, int count)
{
    const double* former = at(back(oldDelay));
    fade.mix(former, at(back(delay)), out, count);
    fadeSteps -= count;
    if (fadeSteps == 0)
        endFade();
}

double* CDSPModDelay::fill(CSlot& slot)
{
    slot.block = pool.takeFilled(size, fillValue);
    return slot.block.write();
}

/// The samples at a ring position, up to the end of their block.
double* CDSPModDelay::at(int position)
{
    CSlot& slot = ring[position >> order];
    double* const samples = slot.block ? slot.block.write() : fill(slot);
    return samples + (position & (size - 1));
}

int CDSPModDelay::back(int samples) const noexcept
{
    const int position = writePosition - samples;
    return position < 0 ? position + (ring.getCount() << order) : position;
}

int CDSPModDelay::sliceAt(int position, int wanted) const noexcept
{
    return std::min(wanted, size - (position & (size - 1)));
}

/// Gives the ring the blocks that the longer of the two delays needs beside the slice being
/// written.
void CDSPModDelay::fitRing()
{
    // A joined signal is kept from its beginning.
    const int longest = std::max({delay, oldDelay, joinSteps > 0 ? pendingDelay : 0});
    const int needed = (longest + size + kMaxSlice - 1) >> order;
    if (needed != ring.getCount())
        resizeRing(needed);
}

/// What the line holds stays: the newest block comes last, and the oldest samples, which share its
/// block in a full ring, move to one of their own or back.
void CDSPModDelay::resizeRing(int needed)
{
    const int former = ring.getCount();
    if (former == 0) {
        for (int i = 0; i < needed; ++i)
            ring.create();
        return;
    }
    const int newest = writePosition >> order;
    const int inBlock = writePosition & (size - 1);
    COwnedArray<CSlot> fitted;
    for (int i = 0; i < needed; ++i)
        fitted.create();
    for (int i = 0; i < std::min(former, needed); ++i)
        fitted[needed - 1 - i].block = ring[(newest - i + former) % former].block;

    const auto tail = static_cast<std::size_t>(size - inBlock) * sizeof(double);
    CAudioBlockRef& last = fitted[needed - 1].block;
    if (needed > former && last) {
        CAudioBlockRef& oldest = fitted[needed - 1 - former].block;
        oldest = pool.takeFilled(size, fillValue);
        std::memcpy(oldest.write() + inBlock, last.read() + inBlock, tail);
    } else if (needed < former) {
        const CAudioBlockRef& oldest = ring[(newest - needed + former) % former].block;
        if (!last)
            last = pool.takeFilled(size, fillValue);
        else if (!last.isSole())
            ring[newest].block.reset();
        if (oldest)
            std::memcpy(last.write() + inBlock, oldest.read() + inBlock, tail);
        else
            std::fill_n(last.write() + inBlock, size - inBlock, fillValue);
    }
    ring = std::move(fitted);
    writePosition = (needed - 1) * size + inBlock;
}

} // namespace tsm
