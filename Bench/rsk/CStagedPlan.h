#pragma once

#include "rsk/CDSPRealFFT.h"

#include <memory>
#include <vector>

namespace tsm::rsk {

/// The baseline of the convolver: a head of 40 taps (80 for long impulses) and stages that grow by
/// four, each late by 2.5 blocks, coded plainly sample by sample and bin by bin, with sums for the
/// blocks to come in place of past spectra and with the packed spectra of the product's transform.
/// Built for AVX2 and free to reorder sums.
class CStagedPlan {
public:
    CStagedPlan(const double* impulse, int length, int phase);
    void process(const double* in, double* out, int count);

private:
    using CBuffer = std::vector<double>;

    struct CAccumulator {
        CBuffer bins;
        int held = 0; // bins that have a value
    };

    struct CStage {
        CStage(const double* taps, int count, int blockOrder, int start, int extraDelay);
        void process(const double* in, double* out, int count);
        void addProducts(int target);
        void endBlock();

        int order;
        int block;
        const CDSPRealFFT& transform;
        int toBoundary;
        int toOutput;
        int binsDone = 0;
        std::vector<CBuffer> filters;
        std::vector<CAccumulator> sums;
        CBuffer store;
        CBuffer frame;
        CBuffer input;
        CBuffer finished; // under inverse transform; between that and the next block unused
        CBuffer output;
        CBuffer ring;
        std::size_t ringPosition = 0;
        CBuffer work;
    };

    CBuffer head;
    CBuffer ring;
    std::size_t position;
    std::vector<std::unique_ptr<CStage>> stages;
};

} // namespace tsm::rsk
