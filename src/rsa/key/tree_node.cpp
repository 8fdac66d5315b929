#include "rsa/key/tree_node.h"

#include <cstring>

namespace pavonix {

TreeNode::~TreeNode()
{
    // Walks down to a leaf, frees it and goes on at its parent, so that every
    // node that is deleted has no children left.
    TreeNode *node = this;
    while (true) {
        if (TreeNode *child = node->firstChild_) {
            node->firstChild_ = child->nextSibling_;
            node = child;
        } else if (node != this) {
            TreeNode *above = node->parent_;
            delete node;
            node = above;
        } else {
            return;
        }
    }
}

void TreeNode::AppendChild(TreeNode *child)
{
    child->parent_ = this;
    if (lastChild_ == nullptr) {
        firstChild_ = child;
    } else {
        lastChild_->nextSibling_ = child;
    }
    lastChild_ = child;
}

const TreeNode *TreeNode::FirstChildTagged(const char *tag) const
{
    const TreeNode *child = firstChild_;
    while (child != nullptr && std::strcmp(child->tag_.c_str(), tag) != 0) {
        child = child->nextSibling_;
    }
    return child;
}

} // namespace pavonix
