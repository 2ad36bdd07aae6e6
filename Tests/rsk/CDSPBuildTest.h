#pragma once

#include "rsk/DSPKernels.h"

#include <gtest/gtest.h>

namespace tsm::rsk {

/// Runs a test once with each build of the kernels that this processor can run.
class CDSPBuildTest : public testing::TestWithParam<EDSPBuild> {
protected:
    void SetUp() override
    {
        kernels = dspKernels(GetParam());
        if (!kernels)
            GTEST_SKIP() << "the processor lacks these instructions";
    }

    const CDSPKernels* kernels = nullptr;
};

inline const char* dspBuildName(EDSPBuild build)
{
    switch (build) {
    case EDSPBuild::Generic:
        return "Generic";
    case EDSPBuild::Fma:
        return "Fma";
    case EDSPBuild::Avx512:
        return "Avx512";
    }
    return "?";
}

#define TSM_FOR_ALL_DSP_BUILDS(Fixture)                                                            \
    INSTANTIATE_TEST_SUITE_P(                                                                      \
        Builds, Fixture, testing::Values(EDSPBuild::Generic, EDSPBuild::Fma, EDSPBuild::Avx512),   \
        [](const auto& build) { return std::string(dspBuildName(build.param)); })

} // namespace tsm::rsk
