#pragma once

#include "Core/CCheckedObject.h"
#include "Core/CMemory.h"
#include "Core/CTree.h"

#include <type_traits>
#include <utility>

namespace tsm {

/// Order of map keys: numbers and pointers by value. Key classes bring a `compareKeys` of their
/// own, found by argument, which may take other types to look up by.
template <class A, class B>
requires(std::is_arithmetic_v<A> || std::is_pointer_v<A> || std::is_enum_v<A>)
    [[nodiscard]] constexpr int compareKeys(const A& a, const B& b) noexcept
{
    return a < b ? -1 : (b < a ? 1 : 0);
}

/// One entry of a `CMap`; `key` must not be changed.
template <class K, class V>
struct CMapNode : CTreeNode {
    template <class Q>
    explicit CMapNode(const Q& from) : key(from), value()
    {
    }
    K key;
    V value;
};

/// One entry of a `CSet`.
template <class K>
struct CSetNode : CTreeNode {
    template <class Q>
    explicit CSetNode(const Q& from) : key(from)
    {
    }
    K key;
};

/// What `CMap` and `CSet` share: finding, entering, leaving and walking in ascending order of keys.
/// An entry's address stays the same until it is removed. Walking reads the tree only, so an entry
/// may be removed once the iterator has moved past it.
template <class K, class Node>
class COrderedTree : public CCheckedObject {
public:
    class CIterator {
    public:
        explicit CIterator(CTreeNode* at) : node(at) {}
        Node& operator*() const { return static_cast<Node&>(*node); }
        Node* operator->() const { return static_cast<Node*>(node); }
        CIterator& operator++()
        {
            node = CTree::next(node);
            return *this;
        }
        bool operator==(const CIterator&) const = default;

    private:
        CTreeNode* node;
    };

    COrderedTree() = default;
    COrderedTree(COrderedTree&& other) noexcept : tree(std::exchange(other.tree, CTree())) {}
    COrderedTree& operator=(COrderedTree&& other) noexcept
    {
        if (this != &other) {
            clear();
            tree = std::exchange(other.tree, CTree());
        }
        return *this;
    }
    COrderedTree(const COrderedTree&) = delete;
    COrderedTree& operator=(const COrderedTree&) = delete;
    ~COrderedTree() { clear(); }

    [[nodiscard]] int getCount() const noexcept { return tree.count; }
    [[nodiscard]] bool isEmpty() const noexcept { return tree.count == 0; }
    CIterator begin() const noexcept { return CIterator(CTree::first(tree.root)); }
    CIterator end() const noexcept { return CIterator(nullptr); }

    /// The entry with the smallest or largest key, or null.
    [[nodiscard]] Node* first() const noexcept { return cast(CTree::first(tree.root)); }
    [[nodiscard]] Node* last() const noexcept { return cast(CTree::last(tree.root)); }
    /// The next entry in order, or null.
    [[nodiscard]] static Node* next(Node* node) noexcept { return cast(CTree::next(node)); }
    [[nodiscard]] static Node* previous(Node* node) noexcept { return cast(CTree::previous(node)); }

    /// The entry of `key`, or null; `key` may be of any type that compares with the keys.
    template <class Q>
    [[nodiscard]] Node* findNode(const Q& key) const noexcept
    {
        CTreeNode* at = tree.root;
        while (at) {
            const int order = compareKeys(static_cast<const Node*>(at)->key, key);
            if (order == 0)
                return static_cast<Node*>(at);
            at = order > 0 ? at->left : at->right;
        }
        return nullptr;
    }
    template <class Q>
    [[nodiscard]] bool contains(const Q& key) const noexcept
    {
        return findNode(key) != nullptr;
    }
    /// The first entry whose key is above `key`, or null.
    template <class Q>
    [[nodiscard]] Node* firstAbove(const Q& key) const noexcept
    {
        CTreeNode* best = nullptr;
        for (CTreeNode* at = tree.root; at;) {
            const bool isAbove = compareKeys(static_cast<const Node*>(at)->key, key) > 0;
            if (isAbove)
                best = at;
            at = isAbove ? at->left : at->right;
        }
        return cast(best);
    }
    /// The entry of `key`, made with a zeroed value when it is new.
    template <class Q>
    Node& findOrAdd(const Q& key)
    {
        CTreeNode* parent = nullptr;
        bool isLeft = false;
        for (CTreeNode* at = tree.root; at;) {
            const int order = compareKeys(static_cast<const Node*>(at)->key, key);
            if (order == 0)
                return *static_cast<Node*>(at);
            parent = at;
            isLeft = order > 0;
            at = isLeft ? at->left : at->right;
        }
        Node* node = createInBlock<Node>(key);
        tree.insert(node, parent, isLeft);
        return *node;
    }
    /// Removes the entry of `key`; tells whether there was one.
    template <class Q>
    bool remove(const Q& key)
    {
        Node* node = findNode(key);
        if (node)
            removeNode(node);
        return node != nullptr;
    }
    void removeNode(Node* node)
    {
        tree.erase(node);
        destroyInBlock(node);
    }
    void clear() noexcept
    {
        // Children first and without rebalancing; the depth is at most 2 log2(count).
        destroyBelow(std::exchange(tree, CTree()).root);
    }

protected:
    static Node* cast(CTreeNode* node) noexcept { return static_cast<Node*>(node); }

private:
    static void destroyBelow(CTreeNode* node) noexcept
    {
        if (!node)
            return;
        destroyBelow(node->left);
        destroyBelow(node->right);
        destroyInBlock(static_cast<Node*>(node));
    }

    CTree tree;
};

/// An ordered map. `for (auto& entry : map)` gives `entry.key` and `entry.value`.
template <class K, class V>
class CMap : public COrderedTree<K, CMapNode<K, V>> {
public:
    using CNode = CMapNode<K, V>;

    CMap() = default;
    CMap(CMap&&) noexcept = default;
    CMap& operator=(CMap&&) noexcept = default;
    CMap(const CMap& other) : COrderedTree<K, CNode>() { addAll(other); }
    CMap& operator=(const CMap& other)
    {
        if (this != &other) {
            this->clear();
            addAll(other);
        }
        return *this;
    }

    /// The value of `key`, entered as a zeroed value when it is new.
    template <class Q>
    V& operator[](const Q& key)
    {
        return this->findOrAdd(key).value;
    }
    /// The value of `key`, or null.
    template <class Q>
    [[nodiscard]] V* find(const Q& key) noexcept
    {
        CNode* node = this->findNode(key);
        return node ? &node->value : nullptr;
    }
    template <class Q>
    [[nodiscard]] const V* find(const Q& key) const noexcept
    {
        const CNode* node = this->findNode(key);
        return node ? &node->value : nullptr;
    }
    /// The value of `key`, or `otherwise`; for maps of pointers and numbers.
    template <class Q>
    [[nodiscard]] V get(const Q& key, V otherwise = V()) const noexcept
    {
        const CNode* node = this->findNode(key);
        return node ? node->value : otherwise;
    }

private:
    void addAll(const CMap& other)
    {
        for (const CNode& entry : other)
            this->findOrAdd(entry.key).value = entry.value;
    }
};

/// An ordered set. `for (auto& entry : set)` gives `entry.key`.
template <class K>
class CSet : public COrderedTree<K, CSetNode<K>> {
public:
    /// Enters `key`; nothing happens when it is there.
    template <class Q>
    void add(const Q& key)
    {
        this->findOrAdd(key);
    }
};

} // namespace tsm
