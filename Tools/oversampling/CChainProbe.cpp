#include "Tools/oversampling/CChainProbe.h"

#include "Audio/CAudioParam.h"
#include "Audio/CAudioParamCollector.h"
#include "Tools/engine/EngineNames.h"

#include <algorithm>
#include <cmath>

namespace tsm {

namespace {

constexpr int kBlock = 512;
constexpr double kDbPerNeper = 8.685889638065037;

} // namespace

CError* CChainProbe::open(const COversamplingChoice& choice, double recGainDb,
                          double hardnessPercent)
{
    wrapper = std::make_unique<CEngineWrapper>();
    TSM_TRY(wrapper->prepare());
    TSM_TRY(set("oversampling", 1.0 + std::log2(choice.factor)));
    TSM_TRY(set("lp-oversampling-enable", choice.isLinear ? 1.0 : 0.0));
    TSM_TRY(set("modReelpath.recgain", std::exp(recGainDb / kDbPerNeper)));
    TSM_TRY(set("modReelpath.hardness", 0.01 * hardnessPercent));
    TSM_TRY(set("modReelpath.flutter", 0.0));
    TSM_TRY(set("modReelpath.cab-enable", 0.0));
    wrapper->setFormat(choice.rate, 1);
    wrapper->startProcessing();
    static_cast<void>(process(std::vector<double>(kBlock)));
    return nullptr;
}

CError* CChainProbe::set(const char* name, double value)
{
    CAudioParam* param = wrapper->getParamCollector().find(kMainPath + CString(name));
    if (!param)
        TSM_FAIL("there is no parameter '%1'", CString(name));
    param->setValue(0, 0, value);
    return nullptr;
}

std::vector<double> CChainProbe::process(const std::vector<double>& in)
{
    std::vector<double> out(in.size());
    for (std::size_t done = 0; done < in.size(); done += kBlock) {
        const int count = static_cast<int>(std::min<std::size_t>(kBlock, in.size() - done));
        const void* const inputs[] = {in.data() + done};
        void* const outputs[] = {out.data() + done};
        wrapper->processBlock(inputs, outputs, count);
    }
    return out;
}

} // namespace tsm
