// Parses an XML text into a tree of elements.
#pragma once

#include "rsa/key/tree_node.h"

#include <memory>

namespace pavonix {

// Lenient, without recursion and in linear time. Attributes, comments,
// processing instructions and the document type are skipped; CDATA sections,
// the five named and all numeric character references count as text; every line
// end (CR, LF or CR LF) becomes one line feed. Text that is not well formed is read as
// follows: an end tag closes the innermost open element, of any name; an element
// that is never closed ends with the text; a tag without '>' is ignored; an invalid
// reference and a '<' that opens no markup are ordinary characters. Parsing ends with
// the root element.
class ParseEngine {
public:
    // `text` is zero-terminated UTF-8 (not validated) and must outlive the
    // engine.
    explicit ParseEngine(const char *text) : at_(text) {}

    // The root element; null when there is none or memory runs out.
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
