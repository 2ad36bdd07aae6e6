#include "rsk/CDSPFIRPlan.h"

#include <cassert>

namespace tsm::rsk {

namespace {

/// Measured, by order of block size: what a stage costs, and what each of its partitions adds.
struct CCost {
    double fixed;
    double perPartition;
};

constexpr CCost kCosts[CDSPFIRPlan::kMaxStages] = {
    {0.00024855, 7.8898e-05},  {0.000220029, 6.8457e-05}, {0.000214842, 6.4779e-05},
    {0.000269852, 6.684e-05},  {0.000291851, 6.5163e-05}, {0.000307456, 6.3092e-05},
    {0.000388251, 4.6687e-05}, {0.000484103, 5.0455e-05}, {0.000509724, 5.2838e-05},
    {0.000617706, 5.5967e-05}, {0.000698987, 7.1091e-05},
};

constexpr int kLast = CDSPFIRPlan::kMaxStages - 1;

/// Tries all plans, depth first; of equal ones the first stays.
class CSearch {
public:
    explicit CSearch(CDSPFIRPlan& plan) : best(plan) {}

    void run(double cost, int rest, int level, int depth)
    {
        cost += kCosts[level].fixed;
        const int order = level + CDSPFIRPlan::kMinOrder;
        const int needed = (rest + (1 << order) - 1) >> order;
        if (level == kLast) {
            finish(cost, level, needed, depth);
            return;
        }
        for (int next = level + 1; next <= kLast; ++next) {
            const int count = (1 << (next - level)) - 1;
            if (count >= needed) {
                finish(cost, level, needed, depth);
                continue;
            }
            stages[depth] = {order, count};
            run(cost + count * kCosts[level].perPartition, rest - (count << order), next,
                depth + 1);
        }
    }

private:
    void finish(double cost, int level, int count, int depth)
    {
        cost += count * kCosts[level].perPartition;
        if (cost >= bestCost)
            return;
        bestCost = cost;
        best.stageCount = depth + 1;
        stages[depth] = {level + CDSPFIRPlan::kMinOrder, count};
        for (int i = 0; i <= depth; ++i)
            best.stages[i] = stages[i];
    }

    CDSPFIRPlan& best;
    double bestCost = 1e10;
    CDSPFIRPlan::CStage stages[CDSPFIRPlan::kMaxStages] = {};
};

} // namespace

CDSPFIRPlan::CDSPFIRPlan(int firstOrder, int tapCount) noexcept
{
    assert(firstOrder >= kMinOrder && firstOrder <= kMaxOrder && tapCount > 0);
    CSearch(*this).run(0.0, tapCount, firstOrder - kMinOrder, 0);
}

} // namespace tsm::rsk
