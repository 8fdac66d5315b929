#include "diagnostics/xml_fault.h"

#include "diagnostics/printable.h"

#include <fcntl.h>
#include <libxml/xmlreader.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>

namespace diagnostics {

namespace {

constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

struct Release {
    void operator()(xmlTextReader *reader) const { xmlFreeTextReader(reader); }
};

#if LIBXML_VERSION >= 21200
void IgnoreError(void *, const xmlError *) {}
#else
void IgnoreError(void *, xmlError *) {}
#endif

std::string FaultOf(xmlTextReader *made)
{
    const std::unique_ptr<xmlTextReader, Release> reader(made);
    xmlSetStructuredErrorFunc(nullptr, IgnoreError); // encoding errors are printed otherwise
    if (reader == nullptr) {
        return "it cannot be read";
    }
    int more = 1;
    while (more == 1) {
        more = xmlTextReaderRead(reader.get());
    }
    if (more == 0) {
        return {};
    }
    const xmlError *error = xmlGetLastError();
    if (error == nullptr || error->message == nullptr) {
        return "it is not XML";
    }
    std::string_view text = error->message;
    text = text.substr(0, text.find('\n'));
    text = text.substr(0, text.find(" use XML_PARSE_HUGE")); // advice for programmers
    const std::string line = error->line > 0 ? "line " + std::to_string(error->line) + ": " : "";
    return line + Printable(text);
}

} // namespace

std::string XmlFault(std::string_view document)
{
    if (document.empty()) {
        return "it is empty";
    }
    xmlResetLastError();
    return FaultOf(
        xmlReaderForMemory(document.data(), static_cast<int>(document.size()), "reply.xml", nullptr, kOptions));
}

std::string XmlFaultOfFile(const std::string &path)
{
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return std::string("it cannot be opened: ") + std::strerror(errno);
    }
    xmlResetLastError();
    std::string fault = FaultOf(xmlReaderForFd(file, "stored.xml", nullptr, kOptions));
    close(file);
    return fault;
}

} // namespace diagnostics
