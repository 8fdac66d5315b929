// Reads an XML text into a tree of elements.
#pragma once

#include "rsa/key/tree_node.h"

#include <memory>

namespace pavonix {

// Forgiving, without recursion and in linear time. Attributes, comments,
// processing instructions and the document type are skipped; CDATA sections,
// the five named and all numeric character references count as text; every line
// end, however it is written, is one line feed. What is not well formed is taken
// as follows: an end tag closes the innermost open element whatever its name; an
// element that is never closed ends with the text; a tag that is never closed is
// none; a reference that means nothing, and a '<' that opens nothing, stand for
// themselves. Reading ends with the root element.
class ParseEngine {
public:
    // `text` is zero-terminated UTF-8 (bytes above 127 are not looked into) and
    // must outlive the engine.
    explicit ParseEngine(const char *text) : at_(text) {}

    // The root element; null when there is none and for want of memory.
    std::unique_ptr<TreeNode> Parse();

private:
    void ReadText();
    void ReadMarkup();
    void ReadCData();
    void ReadStartTag();
    void ReadEndTag();
    void SkipAttributes();
    void SkipQuoted();
    void SkipDocumentType();
    void SkipPast(const char *last);
    void Open(const char *name, std::size_t length);
    void Close();
    void GiveUp();
    void AppendLines(const char *text, const char *end);

    const char *at_;
    std::unique_ptr<TreeNode> root_;
    TreeNode *open_ = nullptr; // the innermost open element
    bool finished_ = false;
};

} // namespace pavonix
