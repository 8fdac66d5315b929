// An XML document, read from a text and asked for the contents of its elements.
#pragma once

#include "rsa/key/tree_node.h"
#include "rsa/text/string_buffer.h"

#include <memory>

namespace pavonix {

class ClsXml {
public:
    // Replaces the document by the one that the zero-terminated text holds. The
    // reading is forgiving: it never fails on odd text, and what stands before
    // the oddity is kept. False, and no document, when there is no root element,
    // for a null text and for want of memory.
    bool LoadXml(const char *text);

    // Stores the text content of the root's first direct child with the tag, case
    // counting, in `content`. False, and `content` empty, when there is no root or
    // no such child.
    bool GetChildContent(const char *tag, StringBuffer *content) const;

private:
    std::unique_ptr<TreeNode> root_;
};

} // namespace pavonix
