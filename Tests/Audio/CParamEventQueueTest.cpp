#include "Audio/CParamEventQueue.h"

#include <gtest/gtest.h>

#include <vector>

namespace tsm {
namespace {

CParamEvent change(unsigned offset, int index, double value)
{
    return {offset, CParamEvent::kParamChange, index, value};
}

std::vector<double> takeValues(CParamEventQueue& queue)
{
    std::vector<double> values;
    for (; queue.peek(); queue.skip())
        values.push_back(queue.peek()->value);
    return values;
}

TEST(AParamEventQueue, GivesEventsByOffsetAndKeepsTheOrderWithinOne)
{
    CParamEventQueue queue;
    queue.add(change(100, 0, 1.0));
    queue.add(change(20, 0, 2.0));
    queue.add(change(100, 1, 3.0));
    queue.add(change(20, 1, 4.0));
    queue.add(change(0, 0, 5.0));
    EXPECT_EQ(takeValues(queue), (std::vector<double>{5.0, 2.0, 4.0, 1.0, 3.0}));
    queue.rewind();
    EXPECT_EQ(queue.peek()->value, 5.0);
}

TEST(AParamEventQueue, NeverPutsAnEventBehindTheReader)
{
    CParamEventQueue queue;
    queue.add(change(10, 0, 1.0));
    queue.skip();
    queue.add(change(5, 0, 2.0));
    EXPECT_EQ(takeValues(queue), (std::vector<double>{2.0}));
}

TEST(AParamEventQueue, WhenFullKeepsTheLastValueOfAParameterAndItsRoom)
{
    CParamEventQueue queue;
    for (int i = 0; i < CParamEventQueue::kDefaultRoom; ++i)
        queue.add(change(static_cast<unsigned>(i), i % 2, i));
    queue.add(change(9000, 0, -1.0));
    queue.add(change(9000, 7, -2.0));
    const std::vector<double> values = takeValues(queue);
    ASSERT_EQ(values.size(), static_cast<std::size_t>(CParamEventQueue::kDefaultRoom));
    EXPECT_EQ(values[values.size() - 2], -1.0); // the last one of parameter 0
    EXPECT_EQ(values.back(), CParamEventQueue::kDefaultRoom - 1);
}

} // namespace
} // namespace tsm
