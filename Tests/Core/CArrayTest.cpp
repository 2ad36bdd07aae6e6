#include "Core/CArray.h"
#include "Core/COwnedArray.h"
#include "Core/CPtr.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace tsm {

namespace {

TEST(AnArray, HoldsEightInsideAndSeventeenAfterTheNinth)
{
    CArray<double> array;
    const auto isInside = [&] {
        const auto* at = reinterpret_cast<const char*>(array.data());
        const auto* self = reinterpret_cast<const char*>(&array);
        return at > self && at < self + sizeof array;
    };
    for (int i = 0; i < 8; ++i)
        array.add(i);
    EXPECT_TRUE(isInside());
    array.add(array[3]); // an element of the storage that goes
    EXPECT_FALSE(isInside());
    EXPECT_EQ(array.getCapacity(), 17);
    EXPECT_EQ(array.last(), 3.0);
    while (array.getCount() <= 17)
        array.add(0.0);
    EXPECT_EQ(array.getCapacity(), 35);
}

TEST(AnArray, DoesWhatAVectorDoes)
{
    std::mt19937 random(5);
    CArray<int> array;
    std::vector<int> model;
    const auto upTo = [&](std::size_t limit) { return static_cast<int>(random() % (limit + 1)); };
    for (int step = 0; step < 20000; ++step) {
        const int value = upTo(1000);
        const int place = upTo(model.size());
        switch (random() % 8) {
        case 0:
        case 1:
            array.add(value);
            model.push_back(value);
            break;
        case 2:
            array.insert(place, value);
            model.insert(model.begin() + place, value);
            break;
        case 3: {
            const int count = std::min(upTo(3), static_cast<int>(model.size()) - place);
            array.remove(place, count);
            model.erase(model.begin() + place, model.begin() + place + count);
            break;
        }
        case 4: {
            const int count = place + upTo(2);
            array.resize(count, value);
            model.resize(static_cast<std::size_t>(count), value);
            break;
        }
        case 5: {
            CArray<int> copy(array);
            array = copy;
            CArray<int> moved(std::move(copy));
            EXPECT_TRUE(copy.isEmpty());
            array.clear();
            array = std::move(moved);
            break;
        }
        case 6: {
            const auto found = std::find(model.begin(), model.end(), value);
            ASSERT_EQ(array.indexOf(value),
                      found == model.end() ? -1 : static_cast<int>(found - model.begin()));
            break;
        }
        default:
            if (step % 50 == 0) {
                array.clear();
                model.clear();
            }
        }
        ASSERT_TRUE(std::equal(array.begin(), array.end(), model.begin(), model.end())) << step;
        ASSERT_LE(array.getCount(), array.getCapacity());
    }
}

struct CCounted {
    explicit CCounted(int& liveCount, int number = 0) : live(liveCount), id(number) { ++live; }
    ~CCounted() { --live; }
    CCounted(const CCounted&) = delete;
    CCounted& operator=(const CCounted&) = delete;
    int& live;
    int id;
};

TEST(AnOwnedArray, KeepsAddressesAndDeletesOnce)
{
    int live = 0;
    {
        COwnedArray<CCounted> array;
        const CCounted* first = &array.create(live, 0);
        for (int i = 1; i < 40; ++i)
            array.create(live, i);
        EXPECT_EQ(&array[0], first);
        EXPECT_EQ(live, 40);
        array.remove(5);
        EXPECT_EQ(live, 39);
        EXPECT_EQ(array[5].id, 6);
        CPtr<CCounted> taken(array.take(0));
        EXPECT_EQ(array.indexOf(taken.get()), -1);
        COwnedArray<CCounted> other;
        other.create(live);
        other = std::move(array);
        EXPECT_EQ(live, 39);
        EXPECT_EQ(other.getCount(), 38);
    }
    EXPECT_EQ(live, 0);
}

TEST(APointerHolder, DeletesWhatItHoldsExactlyOnce)
{
    int live = 0;
    {
        CPtr<CCounted> holder(new CCounted(live));
        holder.reset(new CCounted(live));
        EXPECT_EQ(live, 1);
        CPtr<CCounted> other(std::move(holder));
        EXPECT_FALSE(holder);
        CPtr<CCounted>& same = other;
        other = std::move(same); // to itself
        ASSERT_TRUE(other);
        holder.reset(other.release());
        EXPECT_EQ(live, 1);
    }
    EXPECT_EQ(live, 0);
}

} // namespace

} // namespace tsm
