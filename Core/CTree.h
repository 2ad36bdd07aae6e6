#pragma once

#include <cstdint>

namespace tsm {

/// The links of a node of a red-black tree; the typed nodes of `CMap` and `CSet` derive from it.
struct CTreeNode {
    CTreeNode* left = nullptr;
    CTreeNode* right = nullptr;
    CTreeNode* parent = nullptr;
    std::int32_t color = 1; // 1 red, 0 black
};

/// The part of a red-black tree that doesn't depend on the key: balance and order
/// (Cormen, Leiserson, Rivest, Stein, "Introduction to Algorithms", chapter 13).
/// The caller finds the place of a new node by comparing keys and owns all nodes.
class CTree {
public:
    /// Enters `node` below `parent` (null: as the root), left or right of it, and rebalances.
    void insert(CTreeNode* node, CTreeNode* parent, bool isLeft) noexcept;
    /// Takes `node` out and rebalances. No other node moves in memory.
    void erase(CTreeNode* node) noexcept;

    /// The node of the smallest key, or null.
    [[nodiscard]] static CTreeNode* first(CTreeNode* top) noexcept;
    /// The node of the largest key, or null.
    [[nodiscard]] static CTreeNode* last(CTreeNode* top) noexcept;
    /// The in-order neighbours, or null; they only read the tree.
    [[nodiscard]] static CTreeNode* next(CTreeNode* node) noexcept;
    [[nodiscard]] static CTreeNode* previous(CTreeNode* node) noexcept;

    CTreeNode* root = nullptr;
    std::int32_t count = 0;

private:
    void rotate(CTreeNode* node, bool isToLeft) noexcept;
    void replace(CTreeNode* node, CTreeNode* by) noexcept;
    void fixAfterInsert(CTreeNode* node) noexcept;
    void fixAfterErase(CTreeNode* node, CTreeNode* parent) noexcept;
};

} // namespace tsm
