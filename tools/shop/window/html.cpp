#include "shop/window/html.h"

#include "shop/texts.h"

namespace shop {

namespace {

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

} // namespace shop
