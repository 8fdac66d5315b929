// Writes an XML document of elements, attributes and texts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace shop {

class XmlWriter {
public:
    void Start(const char *element);
    void Attribute(const char *name, std::string_view value);
    void Attribute(const char *name, long long value) { Attribute(name, std::to_string(value)); }
    void Attribute(const char *name, int value) { Attribute(name, std::to_string(value)); }
    void Text(std::string_view text);
    void Element(const char *element, std::string_view text);
    void End();

    // Closes the open elements and returns the document. Call it last, once. Throws std::runtime_error if a text was
    // not UTF-8.
    [[nodiscard]] std::string Finish();

private:
    void Indent() { document_.append(2 * open_.size(), ' '); }
    void EndTag(const char *end);

    std::string document_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    std::vector<const char *> open_;
    bool inTag_ = false;
    bool hasText_ = false;
};

} // namespace shop
