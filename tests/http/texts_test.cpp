#include "http/copy_response_prefix.h"
#include "http/find_text.h"
#include "http/header_value.h"
#include "http/url.h"
#include "http/url_encode.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace pavonix;

TEST(FindText, FindsTheFirstAtOrAfterTheStart)
{
    EXPECT_EQ(FindText("abcabc", "c", 3), 5);
    EXPECT_EQ(FindText("abcabc", "abc", 0), 0);
    EXPECT_EQ(FindText("abcabc", "abc", 1), 3);
    EXPECT_EQ(FindText("aab", "ab", 0), 1);
    EXPECT_EQ(FindText("abc", "abcd", 0), kFindAbsent);
    EXPECT_EQ(FindText("abc", "C", 0), kFindAbsent);
    EXPECT_EQ(FindText("abc", "", 0), kFindAbsent);
    EXPECT_EQ(FindText("abc", "c", 3), kFindAbsent);
    EXPECT_EQ(FindText(nullptr, "c", 0), kFindNullArgument);
    EXPECT_EQ(FindText("abc", nullptr, 0), kFindNullArgument);
}

TEST(UrlEncode, EscapesAllButLettersDigitsAndBlanks)
{
    const auto encode = [](const std::string &text) {
        StringBuffer encoded;
        UrlEncode(text.c_str(), &encoded);
        return std::string(encoded.c_str());
    };
    EXPECT_EQ(encode("a b&c"), "a+b%26c");
    EXPECT_EQ(encode("x-y.z"), "x%2Dy%2Ez");
    EXPECT_EQ(encode("\xC4"), "%C4");
    EXPECT_EQ(encode("-_.~@[`{/:\x7F\xFF\n"), "%2D%5F%2E%7E%40%5B%60%7B%2F%3A%7F%FF%0A");
    EXPECT_EQ(encode("09azAZ"), "09azAZ");
}

TEST(SplitUrl, CutsHostAndTarget)
{
    struct Row {
        const char *url, *host, *target;
    };
    for (const Row &row : {Row{"http://host/goods?page=1", "host", "/goods?page=1"},
                           {"http://host:8080/x", "host:8080", "/x"},
                           {"HTTP://Host/x", "Host", "/x"},
                           {"host:8080/x", "host:8080", "/x"},
                           {"http://host/a//b", "host", "/a//b"},
                           {"http://host/", "host", ""},
                           {"host/", "host", ""}}) {
        const UrlParts parts = SplitUrl(row.url);
        EXPECT_TRUE(parts.valid) << row.url;
        EXPECT_EQ(parts.host, row.host) << row.url;
        EXPECT_EQ(parts.target, row.target) << row.url;
    }
    for (const char *url : {"", "/", "//", "http://", "http://host", "http:///x", "https://host/x", "ftp://host/x",
                            "host", "/x", "host/a//b", "//host/x"}) {
        EXPECT_FALSE(SplitUrl(url).valid) << url;
    }
    EXPECT_FALSE(SplitUrl(nullptr).valid);
}

TEST(GetHeaderValue, TakesTheLineBehindTheColon)
{
    const auto value = [](const char *head, const char *name) {
        const std::unique_ptr<char[]> found(GetHeaderValue(head, name));
        return found == nullptr ? std::string("(null)") : std::string(found.get());
    };
    constexpr char kHead[] = "HTTP/1.1 200 OK\r\nContent-Length: 42\r\nX-Error-Code:906 \r\nLast: z\r\n\r\n";
    EXPECT_EQ(value(kHead, "Content-Length"), " 42") << "the blank stays";
    EXPECT_EQ(value(kHead, "X-Error-Code"), "906 ");
    EXPECT_EQ(value(kHead, "Last"), " z");
    EXPECT_EQ(value(kHead, "content-length"), "(null)");
    EXPECT_EQ(value(kHead, "Absent"), "(null)");
    EXPECT_EQ(value("A: X-Error-Code: 5\r\n", "X-Error-Code"), " 5") << "found inside another value";
    EXPECT_EQ(value("Name: no line end", "Name"), "(null)");
    EXPECT_EQ(value("Name\r\nOther: 1\r\n", "Name"), "(null)") << "its line has no colon";
    EXPECT_EQ(value("Name:\r\n", "Name"), "");
    EXPECT_EQ(value(nullptr, "Name"), "(null)");
    EXPECT_EQ(value("Name: 1\r\n", nullptr), "(null)");
}

TEST(CopyResponsePrefix, KeepsDoubleByteCharactersTogether)
{
    const auto copy = [](const char *source, std::int32_t count) {
        ZtByteData target;
        target.Append("old", 3);
        CopyResponsePrefix(source, &target, count);
        return std::string(reinterpret_cast<const char *>(target.data()), target.length());
    };
    using namespace std::string_literals;
    EXPECT_EQ(copy("\x41\xB0\xA1\x42", 3), "\x41\xB0\xA1\0\0"s);
    EXPECT_EQ(copy("\x41\0", 5), "\x41\0\0\0\0"s);
    EXPECT_EQ(copy("\xA0\xA1\x01", 2), "\xA0\xA1\x01\0\0"s) << "a lead byte at the end takes its trail byte";
    EXPECT_EQ(copy("abc", 0), "\0\0"s);
    EXPECT_EQ(copy(nullptr, 5), "\0\0"s);
}
