#include "token/public_key.h"

#include <libxml/parser.h>

#include <optional>
#include <stdexcept>

namespace token {

namespace {

struct Release {
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, Release>;

// Returns the content of the root's child, or nothing.
std::optional<std::string> Child(const Document &document, const char *name)
{
    for (xmlNode *node = xmlDocGetRootElement(document.get())->children; node != nullptr; node = node->next) {
        if (node->type == XML_ELEMENT_NODE && xmlStrEqual(node->name, reinterpret_cast<const xmlChar *>(name))) {
            const std::unique_ptr<xmlChar, decltype(xmlFree)> content(xmlNodeGetContent(node), xmlFree);
            return reinterpret_cast<const char *>(content.get());
        }
    }
    return std::nullopt;
}

Bytes Number(const Document &document, const char *name)
{
    const auto content = Child(document, name);
    auto bytes = content ? DecodeBase64(*content) : std::nullopt;
    if (!bytes) {
        throw std::runtime_error(std::string("the key XML has no usable ") + name);
    }
    return *std::move(bytes);
}

PublicKey ReadXml(const std::string &text)
{
    constexpr int kQuiet = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    const Document document(xmlReadMemory(text.data(), static_cast<int>(text.size()), "key", nullptr, kQuiet));
    if (document == nullptr) {
        throw std::runtime_error("the key is neither PEM nor well-formed XML");
    }
    if (Child(document, "P") || Child(document, "D")) {
        throw std::runtime_error("this is a private key; register the public one");
    }
    return MakePublicKey(Number(document, "Modulus"), Number(document, "Exponent"));
}

} // namespace

PublicKey ReadPublicKey(const std::string &text)
{
    return text.find("-----BEGIN") != std::string::npos ? ReadPem(text) : ReadXml(text);
}

} // namespace token
