#include "Core/CTree.h"

namespace tsm {

namespace {

constexpr std::int32_t kBlack = 0;
constexpr std::int32_t kRed = 1;

// The empty leaves are black.
bool isRed(const CTreeNode* node)
{
    return node && node->color == kRed;
}

} // namespace

void CTree::insert(CTreeNode* node, CTreeNode* parent, bool isLeft) noexcept
{
    node->left = nullptr;
    node->right = nullptr;
    node->parent = parent;
    node->color = kRed;
    if (!parent)
        root = node;
    else if (isLeft)
        parent->left = node;
    else
        parent->right = node;
    ++count;
    fixAfterInsert(node);
}

void CTree::fixAfterInsert(CTreeNode* node) noexcept
{
    while (isRed(node->parent)) {
        CTreeNode* parent = node->parent;
        CTreeNode* grand = parent->parent; // there is one: a red node isn't the root
        const bool isParentLeft = parent == grand->left;
        CTreeNode* uncle = isParentLeft ? grand->right : grand->left;
        if (isRed(uncle)) {
            parent->color = kBlack;
            uncle->color = kBlack;
            grand->color = kRed;
            node = grand;
            continue;
        }
        if ((node == parent->left) != isParentLeft) {
            rotate(parent, isParentLeft);
            parent = node;
        }
        parent->color = kBlack;
        grand->color = kRed;
        rotate(grand, !isParentLeft);
        break;
    }
    root->color = kBlack;
}

void CTree::erase(CTreeNode* node) noexcept
{
    // What leaves is the colour of the place that closes: the node's own, or its successor's when
    // that one takes the node's place and colour. `child` has moved up into it, below `parent`.
    std::int32_t lostColor = node->color;
    CTreeNode* parent = node->parent;
    CTreeNode* child = node->left ? node->left : node->right;
    if (node->left && node->right) {
        CTreeNode* successor = first(node->right);
        lostColor = successor->color;
        child = successor->right;
        parent = successor;
        if (successor != node->right) {
            parent = successor->parent;
            replace(successor, child);
            successor->right = node->right;
            successor->right->parent = successor;
        }
        replace(node, successor);
        successor->left = node->left;
        successor->left->parent = successor;
        successor->color = node->color;
    } else {
        replace(node, child);
    }
    --count;
    if (lostColor == kBlack)
        fixAfterErase(child, parent);
}

void CTree::fixAfterErase(CTreeNode* node, CTreeNode* parent) noexcept
{
    // The paths through `node` lack one black. A red node takes it; otherwise the sibling's side
    // gives one up, or the lack moves to the parent.
    while (node != root && !isRed(node)) {
        const bool isLeft = node == parent->left;
        CTreeNode* sibling = isLeft ? parent->right : parent->left;
        if (isRed(sibling)) {
            sibling->color = kBlack;
            parent->color = kRed;
            rotate(parent, isLeft);
            sibling = isLeft ? parent->right : parent->left;
        }
        CTreeNode* near = isLeft ? sibling->left : sibling->right;
        CTreeNode* far = isLeft ? sibling->right : sibling->left;
        if (!isRed(near) && !isRed(far)) {
            sibling->color = kRed;
            node = parent;
            parent = node->parent;
            continue;
        }
        if (!isRed(far)) {
            near->color = kBlack;
            sibling->color = kRed;
            rotate(sibling, !isLeft);
            far = sibling;
            sibling = near;
        }
        sibling->color = parent->color;
        parent->color = kBlack;
        far->color = kBlack;
        rotate(parent, isLeft);
        return;
    }
    if (node)
        node->color = kBlack;
}

void CTree::rotate(CTreeNode* node, bool isToLeft) noexcept
{
    CTreeNode* riser = isToLeft ? node->right : node->left;
    CTreeNode* moved = isToLeft ? riser->left : riser->right;
    (isToLeft ? node->right : node->left) = moved;
    if (moved)
        moved->parent = node;
    replace(node, riser);
    (isToLeft ? riser->left : riser->right) = node;
    node->parent = riser;
}

void CTree::replace(CTreeNode* node, CTreeNode* by) noexcept
{
    if (!node->parent)
        root = by;
    else if (node == node->parent->left)
        node->parent->left = by;
    else
        node->parent->right = by;
    if (by)
        by->parent = node->parent;
}

CTreeNode* CTree::first(CTreeNode* top) noexcept
{
    while (top && top->left)
        top = top->left;
    return top;
}

CTreeNode* CTree::last(CTreeNode* top) noexcept
{
    while (top && top->right)
        top = top->right;
    return top;
}

CTreeNode* CTree::next(CTreeNode* node) noexcept
{
    if (node->right)
        return first(node->right);
    while (node->parent && node == node->parent->right)
        node = node->parent;
    return node->parent;
}

CTreeNode* CTree::previous(CTreeNode* node) noexcept
{
    if (node->left)
        return last(node->left);
    while (node->parent && node == node->parent->left)
        node = node->parent;
    return node->parent;
}

} // namespace tsm
