#include "Core/CMap.h"
#include "Core/CString.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace tsm {

namespace {

// The laws of a red-black tree below `node`; returns its number of black levels, -1 for a fault.
int blackLevels(const CTreeNode* node, int& nodeCount)
{
    if (!node)
        return 1;
    ++nodeCount;
    for (const CTreeNode* child : {node->left, node->right})
        if (child && (child->parent != node || (node->color == 1 && child->color == 1)))
            return -1;
    const int left = blackLevels(node->left, nodeCount);
    const int right = blackLevels(node->right, nodeCount);
    if (left < 0 || left != right)
        return -1;
    return left + (node->color == 0 ? 1 : 0);
}

template <class Map>
void expectValidTree(const Map& map)
{
    const CTreeNode* root = map.first();
    while (root && root->parent)
        root = root->parent;
    int nodeCount = 0;
    ASSERT_GT(blackLevels(root, nodeCount), 0);
    ASSERT_EQ(nodeCount, map.getCount());
    ASSERT_TRUE(!root || root->color == 0);
}

void expectSame(const CMap<int, int>& map, const std::map<int, int>& model)
{
    ASSERT_EQ(map.getCount(), static_cast<int>(model.size()));
    auto expected = model.begin();
    for (const auto& entry : map) {
        ASSERT_EQ(entry.key, expected->first);
        ASSERT_EQ(entry.value, expected->second);
        ++expected;
    }
    auto* node = map.last();
    for (auto back = model.rbegin(); back != model.rend(); ++back) {
        ASSERT_EQ(node->key, back->first);
        node = CMap<int, int>::previous(node);
    }
    ASSERT_EQ(node, nullptr);
}

TEST(AMap, DoesWhatAStandardMapDoesAndStaysBalanced)
{
    std::mt19937 random(11);
    CMap<int, int> map;
    std::map<int, int> model;
    for (int step = 0; step < 20000; ++step) {
        const int key = static_cast<int>(random() % 400) - 200;
        // Phases of growth and of shrinking, so that the tree goes through all sizes.
        const bool isGrowing = step / 1500 % 2 == 0;
        if (random() % 4 < (isGrowing ? 3u : 1u)) {
            map[key] += step;
            model[key] += step;
        } else {
            ASSERT_EQ(map.remove(key), model.erase(key) == 1);
        }
        ASSERT_EQ(map.contains(key), model.count(key) == 1);
        const auto above = model.upper_bound(key + 7);
        auto* found = map.firstAbove(key + 7);
        ASSERT_EQ(found ? found->key : 9999, above == model.end() ? 9999 : above->first);
        ASSERT_NO_FATAL_FAILURE(expectValidTree(map)) << step;
        if (step % 100 == 0) {
            ASSERT_NO_FATAL_FAILURE(expectSame(map, model)) << step;
        }
    }
}

TEST(AMap, StaysBalancedInSortedOrder)
{
    for (const int direction : {1, -1}) {
        CMap<int, int> map;
        for (int i = 0; i < 1000; ++i)
            map[i * direction] = i;
        ASSERT_NO_FATAL_FAILURE(expectValidTree(map));
        for (int i = 0; i < 1000; ++i) {
            ASSERT_TRUE(map.remove(i * direction));
            ASSERT_NO_FATAL_FAILURE(expectValidTree(map));
        }
        EXPECT_TRUE(map.isEmpty());
    }
}

TEST(AMap, KeepsEntriesInPlaceWhenOthersLeave)
{
    CMap<int, std::string> map;
    std::map<int, std::string*> places;
    for (int i = 0; i < 300; ++i) {
        map[i] = std::to_string(i);
        places[i] = map.find(i);
    }
    for (int i = 0; i < 300; i += 2)
        map.remove(i * 7 % 300);
    for (const auto& entry : map) {
        EXPECT_EQ(&entry.value, places[entry.key]);
        EXPECT_EQ(entry.value, std::to_string(entry.key));
    }
}

TEST(AMap, LetsAWalkRemoveWhatItHasPassed)
{
    CMap<int, int> map;
    for (int i = 0; i < 100; ++i)
        map[i] = i;
    int seen = 0;
    for (auto at = map.begin(); at != map.end();) {
        auto* passed = &*at;
        ++at;
        EXPECT_EQ(passed->key, seen++);
        map.removeNode(passed);
    }
    EXPECT_EQ(seen, 100);
    EXPECT_TRUE(map.isEmpty());
}

TEST(AMap, FindsTextsWhateverTheirWidth)
{
    CString wide("gain-mode");
    wide.widen();
    CMap<CString, int> map;
    map["gain-mode"] = 1;
    map["gain"] = 2;
    map[wide] += 10;
    EXPECT_EQ(map.getCount(), 2);
    EXPECT_EQ(map.get("gain-mode"), 11);
    EXPECT_EQ(map.get(wide), 11);
    EXPECT_EQ(map.get("gain-modes", -1), -1);
    EXPECT_EQ(map.first()->key, "gain");
}

TEST(AMap, CopiesAndMoves)
{
    CMap<CString, CString> map;
    for (const char* name : {"b", "a", "a rather long name that lies on the heap"})
        map[name] = name;
    CMap<CString, CString> copy(map);
    *copy.find("a") = "changed";
    EXPECT_EQ(*map.find("a"), "a");
    CMap<CString, CString> moved(std::move(copy));
    EXPECT_TRUE(copy.isEmpty());
    EXPECT_EQ(moved.getCount(), 3);
    moved = std::move(map);
    EXPECT_EQ(*moved.find("a"), "a");
    expectValidTree(moved);
}

TEST(ASet, HoldsEachKeyOnceAndInOrder)
{
    CSet<CString> set;
    for (const char* name : {"post", "main", "pre", "main"})
        set.add(name);
    std::vector<std::string> names;
    for (const auto& entry : set)
        names.push_back(entry.key.toUtf8());
    EXPECT_EQ(names, (std::vector<std::string>{"main", "post", "pre"}));
    EXPECT_TRUE(set.remove("post"));
    EXPECT_FALSE(set.remove("post"));
}

} // namespace

} // namespace tsm
