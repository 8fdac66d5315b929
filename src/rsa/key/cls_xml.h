// An XML document, parsed from a text, and access to the contents of its elements.
#pragma once

#include "rsa/key/tree_node.h"
#include "rsa/text/string_buffer.h"

#include <memory>

namespace pavonix {

class ClsXml {
public:
    // Replaces the document by the one in the zero-terminated text. Parsing is lenient:
    // malformed text does not fail, and everything before it is kept. False, and no
    // document, for a null text, without a root element, and when memory runs out.
    [[nodiscard]] bool LoadXml(const char *text);

    // Stores the text content of the root's first direct child with this tag
    // (case-sensitive) in `content`. False, with `content` empty, when there is no root
    // or no such child.
    [[nodiscard]] bool GetChildContent(const char *tag, StringBuffer *content) const;

private:
    std::unique_ptr<TreeNode> root_;
};

} // namespace pavonix
