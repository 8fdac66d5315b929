// One element of an XML document.
#pragma once

#include "rsa/text/string_buffer.h"
#include "rsa/text/objects.h"

#include <cstddef>

namespace pavonix {

// A node owns its children. Nothing here recurses: a document can nest deeply, and the
// device's stack is small.
class TreeNode : public ZentorpObject {
public:
    TreeNode() = default;
    ~TreeNode() override; // frees everything below; only for a node without a parent

    // Adopts `child`, which has no parent yet, as the last child.
    void AppendChild(TreeNode *child);
    // The first direct child whose tag is exactly `tag`; null when there is none.
    const TreeNode *FirstChildTagged(const char *tag) const;

    TreeNode *parent() { return parent_; }
    // As written in the document, a prefix included.
    StringBuffer &tag() { return tag_; }
    // The characters directly inside the element, those of its children excluded.
    StringBuffer &content() { return content_; }
    const StringBuffer &content() const { return content_; }

private:
    StringBuffer tag_;
    StringBuffer content_;
    TreeNode *parent_ = nullptr;
    TreeNode *firstChild_ = nullptr;
    TreeNode *lastChild_ = nullptr;
    TreeNode *nextSibling_ = nullptr;
};

} // namespace pavonix
