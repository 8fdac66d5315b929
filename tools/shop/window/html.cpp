#include "shop/window/html.h"

#include "diagnostics/printable.h"
#include "shop/texts.h"

namespace shop {

namespace {

constexpr std::size_t kShownBytes = 4096;

void AppendEscaped(std::string *html, char letter)
{
    switch (letter) {
    case '&':
        *html += "&amp;";
        break;
    case '<':
        *html += "&lt;";
        break;
    case '>':
        *html += "&gt;";
        break;
    case '"':
        *html += "&quot;";
        break;
    case '\'':
        *html += "&#39;";
        break;
    default:
        *html += letter;
    }
}

} // namespace

std::string Html(const std::string &text)
{
    std::string html;
    for (const char letter : ForTerminal(text)) {
        AppendEscaped(&html, letter);
    }
    return html;
}

std::string HtmlOfBytes(std::string_view bytes)
{
    const std::size_t left = bytes.size() - std::min(bytes.size(), kShownBytes);
    bytes = bytes.substr(0, kShownBytes);
    std::string html = "<pre>";
    while (!bytes.empty()) {
        const std::string_view line = bytes.substr(0, std::min(bytes.find('\n'), bytes.size() - 1) + 1);
        html += Html(diagnostics::Printable(line, line.size())) + "\n";
        bytes.remove_prefix(line.size());
    }
    return html + "</pre>" + (left == 0 ? "" : "<p>and " + std::to_string(left) + " bytes more</p>");
}

} // namespace shop
