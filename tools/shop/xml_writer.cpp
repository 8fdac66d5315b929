#include "xml_writer.h"

#include <stdexcept>

namespace shop {

namespace {

void Check(int result)
{
    if (result < 0) {
        throw std::runtime_error("the XML writer failed");
    }
}

const xmlChar *Bytes(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

const xmlChar *Bytes(const std::string &text)
{
    if (!xmlCheckUTF8(Bytes(text.c_str()))) {
        throw std::runtime_error("a text for the XML writer is not UTF-8");
    }
    return Bytes(text.c_str());
}

} // namespace

XmlWriter::XmlWriter() : buffer_(xmlBufferCreate()), writer_(xmlNewTextWriterMemory(buffer_.get(), 0))
{
    if (writer_ == nullptr) {
        throw std::bad_alloc();
    }
    Check(xmlTextWriterSetIndent(writer_.get(), 1));
    Check(xmlTextWriterSetIndentString(writer_.get(), Bytes("  ")));
    Check(xmlTextWriterStartDocument(writer_.get(), nullptr, "UTF-8", nullptr));
}

void XmlWriter::Start(const char *element)
{
    Check(xmlTextWriterStartElement(writer_.get(), Bytes(element)));
}

void XmlWriter::Attribute(const char *name, const std::string &value)
{
    Check(xmlTextWriterWriteAttribute(writer_.get(), Bytes(name), Bytes(value)));
}

void XmlWriter::Text(const std::string &text)
{
    Check(xmlTextWriterWriteString(writer_.get(), Bytes(text)));
}

void XmlWriter::Element(const char *element, const std::string &text)
{
    Check(xmlTextWriterWriteElement(writer_.get(), Bytes(element), Bytes(text)));
}

void XmlWriter::End()
{
    Check(xmlTextWriterEndElement(writer_.get()));
}

std::string XmlWriter::Finish()
{
    Check(xmlTextWriterEndDocument(writer_.get()));
    Check(xmlTextWriterFlush(writer_.get()));
    return {reinterpret_cast<const char *>(xmlBufferContent(buffer_.get())),
            static_cast<std::size_t>(xmlBufferLength(buffer_.get()))};
}

} // namespace shop
