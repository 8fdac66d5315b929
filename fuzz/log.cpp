// The log's three renderings of any entries and nesting: well-formed according to libxml2,
// and with every entry in its place.
#include "demand.h"
#include "model/choices.h"
#include "rsa/log/logger.h"
#include "support/texts.h"

#include <libxml/parser.h>

#include <memory>

using namespace pavonix;

namespace {

bool IsWellFormed(const std::string &xml)
{
    const std::unique_ptr<xmlDoc, void (*)(xmlDoc *)> document(
        xmlReadMemory(xml.data(), static_cast<int>(xml.size()), nullptr, nullptr,
                      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE),
        xmlFreeDoc);
    return document != nullptr;
}

std::string Printable(std::string text, const char *excluded)
{
    for (char &c : text) {
        c = static_cast<char>(' ' + (c & 127) % 95);
        c = std::string(excluded).find(c) != std::string::npos ? '_' : c;
    }
    return text;
}

// Content with its own CDATA section is not escaped.
std::string Content(e2e::Choices *choices)
{
    const std::string text = choices->Text({"", "\t", "a\nb", "<![CDATA[x]]>", "&<>\"'"});
    return text + Printable(choices->Raw(20), text.starts_with("<![") ? "]&<" : "]");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    e2e::Choices choices(Bytes(data, size));
    Logger log;
    std::string expected = "ZentorpLog:\r\n";
    std::size_t depth = 1;
    const auto expect = [&](const std::string &line) { expected += std::string(2 * depth, ' ') + line + "\r\n"; };
    while (!choices.empty()) {
        const std::string tag = "t" + Printable(choices.Raw(5), " !\"#$%&'()*+,/:;<=>?@[\\]^`{|}~"),
                          text = Content(&choices);
        switch (choices.Below(7)) {
        case 0:
            log.enterContext(tag.c_str());
            expect(tag + ":");
            ++depth;
            break;
        case 1:
            log.leaveContext();
            depth -= depth > 1 ? 1 : 0;
            break;
        case 2:
            log.logError(text.c_str());
            expect(text);
            break;
        case 3:
            log.logInfo(text.c_str());
            expect(text);
            break;
        case 4:
            log.logData(tag.c_str(), text.c_str());
            expect(tag + ": " + text);
            break;
        case 5:
            log.logDataValue(tag.c_str(), text.data(), static_cast<std::uint32_t>(text.size()));
            expect(tag + ": " + test::ToHex(text));
            break;
        default:
            log.logDataLong(tag.c_str(), -static_cast<int>(text.size()));
            expect(tag + ": " + std::to_string(-static_cast<int>(text.size())));
        }
    }
    Demand(test::LogText(log) == expected, "the text:\n" + test::LogText(log) + "instead of\n" + expected);
    Demand(IsWellFormed(test::LogText(log, &LogBase::getLogXml)), test::LogText(log, &LogBase::getLogXml));
    std::string html = test::LogText(log, &LogBase::getLogHtml);
    for (std::size_t at = 0; (at = html.find("<br>", at)) != std::string::npos;) {
        html.insert(at + 3, "/"); // as in XML
    }
    Demand(IsWellFormed("<html>" + html + "</html>"), html);
    return 0;
}
