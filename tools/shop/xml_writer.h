// Writes an XML document of elements, attributes and texts; libxml2 escapes.
#pragma once

#include <libxml/xmlwriter.h>

#include <memory>
#include <string>

namespace shop {

// Every failure (memory, bytes that are not UTF-8) throws std::runtime_error.
class XmlWriter {
public:
    // Begins a document that declares UTF-8.
    XmlWriter();

    void Start(const char *element);
    void Attribute(const char *name, const std::string &value);
    void Attribute(const char *name, long long value) { Attribute(name, std::to_string(value)); }
    void Attribute(const char *name, int value) { Attribute(name, std::to_string(value)); }
    void Text(const std::string &text);
    void Element(const char *element, const std::string &text);
    void End();

    // Closes the open elements and returns the document's bytes. Call it last, once.
    [[nodiscard]] std::string Finish();

private:
    struct Release {
        void operator()(xmlBuffer *buffer) const { xmlBufferFree(buffer); }
        void operator()(xmlTextWriter *writer) const { xmlFreeTextWriter(writer); }
    };
    std::unique_ptr<xmlBuffer, Release> buffer_;
    std::unique_ptr<xmlTextWriter, Release> writer_;
};

} // namespace shop
