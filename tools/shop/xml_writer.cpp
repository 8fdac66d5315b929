#include "xml_writer.h"

#include "texts.h"

#include <libxml/xmlstring.h>

#include <stdexcept>

namespace shop {

void XmlWriter::EndTag(const char *end)
{
    if (inTag_) {
        document_ += end;
        inTag_ = false;
    }
}

void XmlWriter::Start(const char *element)
{
    EndTag(">\n");
    Indent();
    document_.append("<").append(element);
    open_.push_back(element);
    inTag_ = true;
}

void XmlWriter::Attribute(const char *name, std::string_view value)
{
    document_.append(" ").append(name).append("=\"");
    AppendEscaped(&document_, value);
    document_ += '"';
}

void XmlWriter::Text(std::string_view text)
{
    EndTag(">");
    AppendEscaped(&document_, text);
    hasText_ = true;
}

void XmlWriter::Element(const char *element, std::string_view text)
{
    Start(element);
    Text(text);
    End();
}

void XmlWriter::End()
{
    const char *element = open_.back();
    open_.pop_back();
    if (inTag_) {
        EndTag("/>\n");
        return;
    }
    if (!hasText_) {
        Indent();
    }
    document_.append("</").append(element).append(">\n");
    hasText_ = false;
}

std::string XmlWriter::Finish()
{
    while (!open_.empty()) {
        End();
    }
    if (!xmlCheckUTF8(reinterpret_cast<const xmlChar *>(document_.c_str()))) {
        throw std::runtime_error("a text for an XML document is not UTF-8");
    }
    return std::move(document_);
}

} // namespace shop
