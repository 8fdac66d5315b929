// The XML reader against libxml2 on well-formed documents, and on hostile ones.
#include "rsa/key/cls_xml.h"

#include <cstring>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <optional>
#include <random>
#include <string>

using pavonix::ClsXml;
using pavonix::StringBuffer;

namespace {

const char *const kTags[] = {"Modulus", "P", "a", "_b-1.x", "\xC3\xA4"};

// Random well-formed documents of everything the reader knows.
class DocumentMaker {
public:
    explicit DocumentMaker(unsigned seed) : random_(seed) {}

    std::string Make()
    {
        return Pick({"", "<?xml version=\"1.0\"?>\r\n", "<!-- <x> -->\n",
                     "<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r k CDATA '>'><!-- ]>' --><?p >?>]>"}) +
               MakeElement("r", 4) + Pick({"", "\n", "<!-- end -->", "<?end?>"});
    }

private:
    std::string Pick(std::initializer_list<const char *> choices) { return choices.begin()[Below(choices.size())]; }
    std::size_t Below(std::size_t limit) { return random_() % limit; }

    std::string MakeElement(const std::string &tag, int depth)
    {
        const std::string start =
            std::string("<") + tag + Pick({"", " ", "\n", " k='v'", " k=\"a > b\" l='\"/'", "\tk = '&lt;' "});
        if (Below(6) == 0) {
            return start + "/>";
        }
        std::string content;
        for (std::size_t i = Below(6); i > 0; --i) {
            content += depth > 0 && Below(2) == 0 ? MakeElement(kTags[Below(std::size(kTags))], depth - 1) : MakeText();
        }
        return start + ">" + content + "</" + tag + Pick({">", " >"});
    }

    std::string MakeText()
    {
        return Pick({"AQAB",
                     " b+/=\t",
                     "\r\n",
                     "\r",
                     "\n\r",
                     "a>b",
                     "\"'",
                     "]]",
                     "&amp;",
                     "&lt;&gt;",
                     "&quot;&apos;",
                     "&#65;",
                     "&#x000000e4;",
                     "&#8364;",
                     "&#x1F600;",
                     "&#13;",
                     "\xE2\x82\xAC",
                     "<![CDATA[]]>",
                     "<![CDATA[<x>&amp;]]]]>",
                     "<![CDATA[\r\n>\r]]>",
                     "<!-- <P> - -->",
                     "<?pi <P>?>"});
    }

    std::mt19937 random_;
};

std::optional<std::string> OwnContent(const ClsXml &xml, const char *tag)
{
    StringBuffer content;
    return xml.GetChildContent(tag, &content) ? std::optional<std::string>(content.c_str()) : std::nullopt;
}

// The texts directly inside the root's first child with the tag.
std::optional<std::string> LibraryContent(xmlDoc *document, const char *tag)
{
    for (const xmlNode *child = xmlDocGetRootElement(document)->children; child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE && std::strcmp(reinterpret_cast<const char *>(child->name), tag) == 0) {
            std::string content;
            for (const xmlNode *text = child->children; text != nullptr; text = text->next) {
                if (text->type == XML_TEXT_NODE || text->type == XML_CDATA_SECTION_NODE) {
                    content += text->content != nullptr ? reinterpret_cast<const char *>(text->content) : "";
                }
            }
            return content;
        }
    }
    return std::nullopt;
}

} // namespace

TEST(ClsXml, AgreesWithLibxml2OnWellFormedDocuments)
{
    int found = 0;
    for (unsigned seed = 0; seed < 3000; ++seed) {
        const std::string text = DocumentMaker(seed).Make();
        const std::unique_ptr<xmlDoc, void (*)(xmlDoc *)> document(
            xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, XML_PARSE_NONET), xmlFreeDoc);
        ASSERT_NE(document, nullptr) << text;
        ClsXml xml;
        ASSERT_TRUE(xml.LoadXml(text.c_str())) << text;
        for (const char *tag : kTags) {
            const std::optional<std::string> expected = LibraryContent(document.get(), tag);
            ASSERT_EQ(OwnContent(xml, tag), expected) << text;
            found += expected && !expected->empty() ? 1 : 0;
        }
    }
    EXPECT_GT(found, 1000);
    xmlCleanupParser();
}

// Without recursion and in linear time: each of these would overflow the stack or
// take minutes otherwise.
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
    };
    for (const auto &row : rows) {
        ClsXml xml;
        xml.LoadXml(row.text.c_str());
        EXPECT_TRUE(OwnContent(xml, "P") == row.content) << row.text.substr(0, 60);
    }
}
