#include "rsa/log/log_rendering.h"

#include "rsa/text/allocate.h"
#include "support/tap.h"

#include <gtest/gtest.h>

#include <string>

namespace pavonix {
namespace {

LogEntry2 *Add(LogEntry2 *parent, LogEntryKind kind, const char *tag, const char *content)
{
    LogEntry2 *entry = AllocateObject<LogEntry2>(kind);
    entry->tag().Append(tag);
    entry->content().Append(content);
    EXPECT_TRUE(parent->AddChild(entry));
    return entry;
}

using Rendering = void (*)(const LogEntry2 &, StringBuffer *);

std::string Rendered(Rendering rendering, const LogEntry2 &entry)
{
    StringBuffer text;
    rendering(entry, &text);
    return text.c_str();
}

TEST(LogRendering, AContextWithOneEntry)
{
    LogEntry2 outer(LogEntryKind::kContext);
    outer.tag().Append("Outer");
    EXPECT_EQ(Rendered(RenderText, outer), "Outer:\r\n");
    EXPECT_EQ(Rendered(RenderHtml, outer), "Outer:<blockquote>\r\n</blockquote>\r\n");
    EXPECT_EQ(Rendered(RenderXml, outer), "<Outer>\r\n</Outer>\r\n");
    Add(&outer, LogEntryKind::kInfo, "", "done");
    EXPECT_EQ(Rendered(RenderText, outer), "Outer:\r\n  done\r\n");
    EXPECT_EQ(Rendered(RenderHtml, outer), "Outer:<blockquote>\r\ndone<br>\r\n</blockquote>\r\n");
    EXPECT_EQ(Rendered(RenderXml, outer), "<Outer>\r\n<info>done</info>\r\n</Outer>\r\n");
    LogEntry2 *inner = Add(&outer, LogEntryKind::kContext, "Inner", "");
    Add(inner, LogEntryKind::kData, "size", "12");
    EXPECT_EQ(Rendered(RenderText, *inner), "Inner:\r\n  size: 12\r\n") << "an inner one is rendered on its own";
}

TEST(LogRendering, CdataIsPutAroundContentThatNeedsIt)
{
    const char *rows[][2] = {
        {"plain \"text\" \r", "plain \"text\" \r"},
        {"", ""},
        {"a<b", "<![CDATA[a<b]]>"},
        {"a>b", "<![CDATA[a>b]]>"},
        {"a&b", "<![CDATA[a&b]]>"},
        {"a\nb", "<![CDATA[a\nb]]>"},
        {"a\tb", "<![CDATA[a\tb]]>"},
        {"x<![CDATA[a&b]]>y", "x<![CDATA[a&b]]>y"},
        {"]]> <![CDATA[", "]]> <![CDATA["},
        {"<![CDATA[]]", "<![CDATA[<![CDATA[]]]]>"},
        {"]]>", "<![CDATA[]]>]]>"},
    };
    for (const LogEntryKind kind : {LogEntryKind::kError, LogEntryKind::kInfo, LogEntryKind::kData}) {
        const std::string tag = kind == LogEntryKind::kError ? "error" : kind == LogEntryKind::kInfo ? "info" : "t";
        for (const auto &row : rows) {
            LogEntry2 entry(kind);
            entry.tag().Append("t");
            entry.content().Append(row[0]);
            EXPECT_EQ(Rendered(RenderXml, entry), "<" + tag + ">" + row[1] + "</" + tag + ">\r\n");
        }
    }
}

TEST(LogRendering, DepthAndBreadthNeedNoStack)
{
    const tap::Holdings before = tap::Held();
    LogEntry2 *root = AllocateObject<LogEntry2>(LogEntryKind::kContext);
    LogEntry2 *innermost = root;
    for (int i = 0; i < 100000; ++i) {
        innermost = Add(innermost, LogEntryKind::kContext, "c", "");
    }
    for (int i = 0; i < 1000; ++i) {
        Add(innermost, LogEntryKind::kInfo, "", std::to_string(i).c_str());
    }
    const std::string xml = Rendered(RenderXml, *root);
    EXPECT_EQ(xml.size(), 4 + 100000 * 5 + 15 * 1000 + 10 + 2 * 90 + 3 * 900 + 5 + 100000 * 6);
    EXPECT_NE(xml.find("<info>998</info>\r\n<info>999</info>\r\n</c>\r\n"), std::string::npos);
    delete root;
    EXPECT_EQ(tap::Held(), before);
}

} // namespace
} // namespace pavonix
