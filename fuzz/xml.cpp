// The XML parser compared with libxml2 on well-formed texts; others must not crash.
#include "demand.h"
#include "rsa/key/cls_xml.h"

#include <libxml/parser.h>

#include <algorithm>
#include <memory>

namespace {

using Document = std::unique_ptr<xmlDoc, void (*)(xmlDoc *)>;

std::string Text(const xmlNode &element)
{
    std::string text;
    for (const xmlNode *child = element.children; child != nullptr; child = child->next) {
        const bool holds = child->type == XML_TEXT_NODE || child->type == XML_CDATA_SECTION_NODE;
        text += holds && child->content != nullptr ? reinterpret_cast<const char *>(child->content) : "";
    }
    return text;
}

// Excludes document types, whose entities the parser does not support, and namespaces,
// whose prefix libxml2 removes from names.
bool IsComparable(const std::string &text)
{
    return text.find("<!D") == std::string::npos && text.find("xmlns") == std::string::npos &&
           text.find("xml:") == std::string::npos &&
           std::all_of(text.begin(), text.end(), [](char c) { return c > 0; });
}

void CheckChildren(const pavonix::ClsXml &xml, xmlNode *root)
{
    for (const xmlNode *child = root->children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE) {
            continue;
        }
        const xmlNode *first = root->children;
        while (first->type != XML_ELEMENT_NODE || xmlStrcmp(first->name, child->name) != 0) {
            first = first->next;
        }
        pavonix::StringBuffer content;
        const auto *tag = reinterpret_cast<const char *>(child->name);
        Demand(xml.GetChildContent(tag, &content), std::string("no element ") + tag);
        Demand(content.c_str() == Text(*first), std::string("the content of ") + tag);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text = Bytes(data, size).c_str();
    pavonix::ClsXml xml;
    const bool loaded = xml.LoadXml(text.c_str());
    const Document document(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                          XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
                            xmlFreeDoc);
    if (document != nullptr && IsComparable(text)) {
        Demand(loaded, "a well-formed document without a root");
        CheckChildren(xml, xmlDocGetRootElement(document.get()));
    }
    return 0;
}
