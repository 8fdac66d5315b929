#include "rsa/text/allocate.h"
#include "rsa/text/zt_byte_data.h"
#include "support/tap.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string>

using namespace pavonix;
using namespace pavonix::test;

TEST(StringBuffer, GrowsByItsIncrement)
{
    StringBuffer text, counted, single, reserved;
    EXPECT_EQ(text.capacity(), 202);
    text.Append(std::string(250, 'x').c_str());
    EXPECT_EQ(text.capacity(), 250 + 202 + 1);
    EXPECT_EQ(text.increment(), 226);
    text.Append(std::string(4000000, 'y').c_str());
    EXPECT_EQ(text.increment(), 500000);
    counted.AppendN(std::string(202, 'q').c_str(), 202);
    EXPECT_EQ(counted.capacity(), 202 + 202) << "no terminator byte";
    for (int i = 0; i < 202; ++i) {
        EXPECT_EQ(single.capacity(), 202);
        single.AppendChar('r');
    }
    EXPECT_EQ(single.capacity(), 201 + 202 + 1);
    reserved.Reserve(201);
    EXPECT_EQ(reserved.capacity(), 202) << "fits exactly";
    reserved.Reserve(202);
    EXPECT_EQ(reserved.capacity(), 202 + 202 + 1);
    for (StringBuffer *grown : {&counted, &single, &reserved}) {
        EXPECT_EQ(grown->increment(), 202);
    }
}

TEST(StringBuffer, EditsItsText)
{
    StringBuffer text;
    text.AppendN("a\0b", 3);
    EXPECT_EQ(text.length(), 3);
    text.Clear();
    text.Append(" \t\r\nAZ[az ");
    text.ToLower();
    text.RemoveChar('[');
    text.Trim();
    EXPECT_STREQ(text.c_str(), "azaz");
    text.ReplaceChar('z', '-');
    EXPECT_STREQ(text.c_str(), "a-a-");
    EXPECT_FALSE(text.BeginsWith("a-a--") || text.EndsWith("a-") == text.EndsWith("longer than the text"));
    EXPECT_TRUE(text.ContainsChar('-') && !text.ContainsChar('z'));
    text.Append(text.c_str());
    EXPECT_STREQ(text.c_str(), "a-a-a-a-");
    text.Append(std::string(190, 'x').c_str());
    text.Shrink();
    EXPECT_EQ(text.capacity(), 202) << "202 is not more than 198 + 4";
    text.RemoveChar('a');
    text.Shrink();
    EXPECT_EQ(text.capacity(), 195);
    const std::string once = text.c_str();
    text.Append(text.c_str());
    EXPECT_EQ(text.c_str(), once + once) << "appending its own text, which moves";
    text.Append(static_cast<const char *>(nullptr));
    text.Reserve(0);
    EXPECT_TRUE(text.length() == 388 && !text.EndsWith("y") && !StringBuffer().ContainsChar('y'));
}

TEST(StringBuffer, FallsBackIfAllocationsFail)
{
    tap::FailNth(1, false);
    const StringBuffer poor; // the first allocation fails, the second one of 4 bytes does not
    EXPECT_EQ(poor.capacity(), 4);
    EXPECT_STREQ(poor.c_str(), "");
    tap::FailNth(1, true);
    StringBuffer none;
    none.Append("lost");
    none.Reserve(10);
    none.Shrink();
    EXPECT_EQ(none.capacity(), 1);
    EXPECT_STREQ(none.c_str(), "");
    EXPECT_FALSE(none.complete());
    tap::FailNone();
    none.Append("kept");
    EXPECT_STREQ(none.c_str(), "kept");
    EXPECT_FALSE(none.complete());
    none.Clear();
    EXPECT_TRUE(none.complete());

    none.Append("old");
    tap::FailNth(1, true);
    none.Append(std::string(5000, 'x').c_str());
    tap::FailNone();
    EXPECT_STREQ(none.c_str(), "old");
    none.AppendN("x", INT32_MAX);
    EXPECT_STREQ(none.c_str(), "old") << "a growth that would wrap is a failed allocation";
}

TEST(DataBuffer, GrowsWithTheSlackOfEachOperation)
{
    DataBuffer byte, fill, block, large, exact;
    ASSERT_TRUE(byte.AppendByte(1));
    EXPECT_EQ(byte.capacity(), 10000u);
    ASSERT_TRUE(fill.AppendFill(7, 5));
    EXPECT_EQ(fill.capacity(), 10005u);
    ASSERT_TRUE(block.Append("12345", 5));
    EXPECT_EQ(block.capacity(), 20000u);
    const std::string bytes(20001, 'b');
    ASSERT_TRUE(large.Append(bytes.data(), 20001));
    EXPECT_EQ(large.capacity(), 20001u);
    ASSERT_TRUE(exact.EnsureCapacity(3) && exact.EnsureCapacity(1) && exact.AppendFill(7, 2) && exact.AppendByte(7));
    EXPECT_EQ(exact.capacity(), 3u);
    ASSERT_TRUE(exact.AppendByte(8));
    EXPECT_EQ(exact.capacity(), 10003u);
    EXPECT_EQ(BytesOf(exact), "\7\7\7\x8");
    EXPECT_TRUE(DataBuffer().Append(nullptr, 9) && DataBuffer().AppendFill(1, 0));
    EXPECT_FALSE(DataBuffer().EnsureCapacity(0)) << "no data";
}

TEST(DataBuffer, OwnsBorrowsAndHandsOver)
{
    const tap::OpenHandles before = tap::Held();
    {
        DataBuffer buffer;
        ASSERT_TRUE(buffer.AppendByte(1));
        buffer.TakeOver(AllocateArray<std::uint8_t>(40), 40);
        EXPECT_EQ(buffer.length(), 40u);
        EXPECT_EQ(buffer.capacity(), 40u);
        EXPECT_FALSE(buffer.borrowed());

        std::uint8_t outside[3] = {1, 2, 3};
        buffer.Borrow(outside, 3);
        EXPECT_TRUE(buffer.borrowed());
        ASSERT_TRUE(buffer.AppendByte(4)) << "growth copies borrowed bytes";
        EXPECT_FALSE(buffer.borrowed());
        EXPECT_EQ(BytesOf(buffer), "\1\2\3\4");
        buffer.Borrow(outside, 3);
        buffer.Clear();
        EXPECT_EQ(outside[0], 1) << "borrowed bytes are not wiped";

        ZtByteData holder;
        ASSERT_TRUE(holder.Append("xyz", 3));
        ASSERT_TRUE(holder.AppendByte(0x141));
        EXPECT_EQ(holder.length(), 4u);
        const std::unique_ptr<std::uint8_t[]> detached(holder.Detach());
        EXPECT_EQ(std::string(detached.get(), detached.get() + 4), "xyzA");
        EXPECT_EQ(holder.length(), 0u);
        EXPECT_EQ(holder.data(), nullptr);
    }
    EXPECT_EQ(tap::Held(), before);
}

// The length that would wrap is that of a borrowed block, which no operation reads.
TEST(DataBuffer, LosesItsContentIfGrowthFails)
{
    DataBuffer buffer, fill, block;
    ASSERT_TRUE(buffer.EnsureCapacity(4) && buffer.Append("1234", 4));
    tap::FailNth(1, false);
    EXPECT_FALSE(buffer.AppendByte(5));
    EXPECT_EQ(buffer.length(), 0u);
    EXPECT_EQ(buffer.data(), nullptr);
    EXPECT_TRUE(buffer.AppendByte(6));
    std::uint8_t outside[1] = {0};
    fill.Borrow(outside, UINT32_MAX - 1);
    block.Borrow(outside, UINT32_MAX - 1);
    EXPECT_FALSE(fill.AppendFill(0, 2));
    EXPECT_FALSE(block.Append("ab", 2));
}

namespace {

constexpr std::size_t kMarkOffset = sizeof(void *); // after the vtable pointer

// The optimiser must not remove the writes of the mark and the fill pattern in a destructor,
// and each operation must check the mark.
template <typename Buffer, typename Operations>
void ExpectDeadMarkToEndTheProcess(std::uint8_t mark, std::ptrdiff_t filled, const Operations &operations)
{
    alignas(Buffer) unsigned char room[sizeof(Buffer)] = {};
    Buffer *buffer = new (room) Buffer;
    EXPECT_EQ(room[kMarkOffset], mark);
    for (std::size_t i = 0; i < std::size(operations); ++i) {
        for (const int wrong : {0, mark ^ 1}) {
            EXPECT_DEATH((room[kMarkOffset] = static_cast<unsigned char>(wrong), operations[i](*buffer)), "")
                << "operation " << i;
        }
    }
    buffer->~Buffer();
    EXPECT_EQ(room[kMarkOffset], 0);
    EXPECT_EQ(std::count(room + kMarkOffset, room + sizeof room, 0xDD), filled);
}

} // namespace

TEST(IntegrityMark, OfATextIsChecked)
{
    using Text = StringBuffer;
    void (*const operations[])(Text &) = {
        [](Text &text) { text.Append("x"); },
        [](Text &text) { (void)text.length(); },
        [](Text &text) { text.~Text(); },
    };
    ExpectDeadMarkToEndTheProcess<Text>(0xAA, 16, operations); // half of the pointer, three fields
}

TEST(IntegrityMark, OfBytesIsChecked)
{
    using Bytes = DataBuffer;
    void (*const operations[])(Bytes &) = {
        [](Bytes &bytes) { (void)bytes.AppendByte(1); },
        [](Bytes &bytes) { (void)bytes.data(); },
        [](Bytes &bytes) { bytes.~Bytes(); },
    };
    ExpectDeadMarkToEndTheProcess<Bytes>(0xDB, 0, operations);
}
