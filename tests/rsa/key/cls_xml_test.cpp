// Documents that would harm a careless parser. fuzz/xml.cpp compares well-formed ones with
// libxml2.
#include "rsa/key/cls_xml.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>

using pavonix::ClsXml;
using pavonix::StringBuffer;

namespace {

std::optional<std::string> OwnContent(const ClsXml &xml, const char *tag)
{
    StringBuffer content;
    return xml.GetChildContent(tag, &content) ? std::optional<std::string>(content.c_str()) : std::nullopt;
}

} // namespace

// Parsing must take linear time and no recursion: otherwise each of these would overflow the
// stack or take minutes.
TEST(ClsXml, HostileDocuments)
{
    const auto repeat = [](const char *text, int count) {
        std::string result;
        for (int i = 0; i < count; ++i) {
            result += text;
        }
        return result;
    };
    const int many = 100000;
    const struct {
        std::string text;
        std::optional<std::string> content;
    } rows[] = {
        {repeat("<a>", many), std::nullopt},
        {repeat("<a>", many) + repeat("</a>", many), std::nullopt},
        {"<r>" + repeat("<a>", many) + repeat("</a>", many) + "<P>x</P></r>", "x"},
        {"<r>" + repeat("<a/>", many) + "<P>x</P>", "x"},
        {"<r>" + repeat("<a>", many) + repeat("</b>", many) + "<P>x", "x"},
        {"<r><P>" + repeat("&#", 200000), repeat("&#", 200000)},
        {"<r><P>" + repeat("&#x0", 200000), repeat("&#x0", 200000)},
        {"<r><P>&#0;&#xD800;&#x110000;&#99999999999;&nbsp;&#;&#xg;&",
         "&#0;&#xD800;&#x110000;&#99999999999;&nbsp;&#;&#xg;&"},
        {"<r><P>a<{b<[c<`d<@e<:x/></P>", "a<{b<[c<`d<@e"},
        {"<!DOCTYPE r \"<\"><r><P>x</P", "x"},
        {"<r><P>" + repeat("<", 200000), repeat("<", 200000)},
        {"<r><P>x" + repeat("<!-", 200000), "x"},
        {"<r><P>x" + repeat("<a b='", 200000), "x"},
        {"<r><P>x</P>" + repeat("<![CDATA[", 200000), "x"},
        {repeat("<!DOCTYPE [", 200000), std::nullopt},
        {"<r><P>a< b</P>", "a< b"},
        {"</r><r><P>x</Q></r><P>y", "x"},
        {"<r><P>a\rb\r\nc\r\rd\r</P>", "a\nb\nc\n\nd\n"}, // XML 1.0, section 2.11
    };
    for (const auto &row : rows) {
        ClsXml xml;
        (void)xml.LoadXml(row.text.c_str());
        EXPECT_TRUE(OwnContent(xml, "P") == row.content) << row.text.substr(0, 60);
    }
}
