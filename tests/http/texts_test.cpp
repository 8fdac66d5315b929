#include "http/find_text.h"
#include "http/reply_text.h"
#include "http/url.h"

#include <gtest/gtest.h>

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

TEST(UrlEncode, EscapesAllButLettersDigitsAndSpaces)
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

TEST(CopyResponsePrefix, KeepsDoubleByteCharactersTogether)
{
    const auto copy = [](const char *source, std::int32_t count) {
        ZtByteData target;
        EXPECT_TRUE(target.Append("old", 3));
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
