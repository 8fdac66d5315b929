#include "rsa/text/allocate.h"
#include "rsa/text/data_buffer.h"
#include "rsa/text/string_buffer.h"
#include "rsa/text/zt_byte_data.h"
#include "support/tap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string>

using namespace pavonix;

TEST(StringBuffer, GrowsByItsIncrement)
{
    StringBuffer text;
    EXPECT_EQ(text.capacity(), 202);
    text.Append(std::string(250, 'x').c_str());
    EXPECT_EQ(text.capacity(), 250 + 202 + 1);
    EXPECT_EQ(text.increment(), 226);

    text.Append(std::string(2000000, 'y').c_str());
    EXPECT_EQ(text.increment(), 500000);
    const std::int32_t capacity = text.capacity();
    text.Append(std::string(static_cast<std::size_t>(capacity), 'z').c_str());
    EXPECT_EQ(text.increment(), 500000);
    EXPECT_EQ(text.capacity(), text.length() + 500000 + 1);
}

TEST(StringBuffer, CountedAppendsAndReserve)
{
    StringBuffer text;
    text.AppendN("a\0b", 3);
    EXPECT_EQ(text.length(), 3);
    text.Reserve(199); // 3 + 199 is not below 202
    EXPECT_EQ(text.capacity(), 3 + 202 + 199 + 1);
    EXPECT_EQ(text.increment(), 202) << "reserving leaves the increment alone";
    text.Clear();
    text.AppendN(std::string(404, 'q').c_str(), 404);
    EXPECT_EQ(text.capacity(), 405 + 0) << "it just fits";
    text.AppendChar('r');
    EXPECT_EQ(text.capacity(), 404 + 202 + 1) << "a counted append adds no terminator byte";
    text.Append(text.c_str());
    EXPECT_EQ(std::string(text.c_str()), std::string(404, 'q') + "r" + std::string(404, 'q') + "r");
}

TEST(StringBuffer, ShrinksOnlyBeyondTheSlack)
{
    StringBuffer text;
    text.Append("0123456789");
    text.Shrink();
    EXPECT_EQ(text.capacity(), 11);
    StringBuffer other;
    other.Append(std::string(198, 'x').c_str());
    other.Shrink();
    EXPECT_EQ(other.capacity(), 202) << "202 is not more than 198 + 4";
}

TEST(StringBuffer, ComparesItsEnds)
{
    StringBuffer text;
    text.Append("Base");
    EXPECT_FALSE(text.BeginsWith("Base-64"));
    EXPECT_TRUE(text.EndsWith("se"));
    EXPECT_FALSE(text.EndsWith("a longer text than there is"));
    EXPECT_TRUE(text.ContainsChar('B'));
    EXPECT_FALSE(text.ContainsChar('z'));
}

TEST(StringBuffer, FallsBackWhenThereIsNoMemory)
{
    tap::FailNth(1, false);
    {
        StringBuffer poor; // the first allocation fails, the second one of 4 bytes does not
        tap::FailNone();
        EXPECT_EQ(poor.capacity(), 4);
        EXPECT_STREQ(poor.c_str(), "");
    }
    tap::FailNth(1, true);
    StringBuffer none;
    none.Append("lost");
    none.Reserve(10);
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
    ASSERT_TRUE(exact.EnsureCapacity(40));
    EXPECT_EQ(exact.capacity(), 40u);
    EXPECT_TRUE(exact.EnsureCapacity(10));
    EXPECT_EQ(exact.capacity(), 40u);
    EXPECT_TRUE(DataBuffer().Append(nullptr, 9));
    EXPECT_FALSE(DataBuffer().EnsureCapacity(0)) << "no data is no data";
}

TEST(DataBuffer, OwnsBorrowsAndHandsOver)
{
    const tap::Holdings before = tap::Held();
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
        ASSERT_TRUE(buffer.AppendByte(4)) << "growing copies what was borrowed";
        EXPECT_FALSE(buffer.borrowed());
        EXPECT_EQ(std::memcmp(buffer.data(), "\1\2\3\4", 4), 0);

        ZtByteData holder;
        holder.Append("xyz", 3);
        holder.AppendByte(0x141);
        EXPECT_EQ(holder.length(), 4u);
        const std::unique_ptr<std::uint8_t[]> detached(holder.Detach());
        EXPECT_EQ(std::memcmp(detached.get(), "xyzA", 4), 0);
        EXPECT_EQ(holder.length(), 0u);
        EXPECT_EQ(holder.data(), nullptr);
    }
    EXPECT_EQ(tap::Held(), before);
}

TEST(DataBuffer, LosesItsContentWithAFailedGrowth)
{
    DataBuffer buffer;
    ASSERT_TRUE(buffer.EnsureCapacity(4) && buffer.Append("1234", 4));
    tap::FailNth(1, false);
    EXPECT_FALSE(buffer.AppendByte(5));
    tap::FailNone();
    EXPECT_EQ(buffer.length(), 0u);
    EXPECT_EQ(buffer.data(), nullptr);
    EXPECT_TRUE(buffer.AppendByte(6));
}

// Lengths are 32-bit: a growth that would wrap is a failed allocation. The length
// is faked through a borrowed block that no operation reads.
TEST(DataBuffer, RefusesToWrap)
{
    std::uint8_t outside[1] = {0};
    DataBuffer byte, fill, block;
    for (DataBuffer *buffer : {&byte, &fill, &block}) {
        buffer->Borrow(outside, UINT32_MAX - 1);
    }
    EXPECT_FALSE(fill.AppendFill(0, 2));
    EXPECT_FALSE(block.Append("ab", 2));
    StringBuffer text;
    text.Append("ab");
    text.AppendN("x", INT32_MAX);
    EXPECT_STREQ(text.c_str(), "ab");
    EXPECT_FALSE(text.complete());
}

// The mark and the fill pattern must survive an optimiser that knows the object
// is dying; every use of a destroyed buffer ends the process.
TEST(IntegrityMark, IsGoneAfterDestruction)
{
    constexpr std::size_t kMarkOffset = sizeof(void *); // behind the virtual table
    alignas(StringBuffer) unsigned char textRoom[sizeof(StringBuffer)];
    StringBuffer *text = new (textRoom) StringBuffer;
    EXPECT_EQ(textRoom[kMarkOffset], 0xAA);
    text->~StringBuffer();
    EXPECT_EQ(textRoom[kMarkOffset], 0);
    EXPECT_EQ(std::count(textRoom + kMarkOffset, textRoom + sizeof textRoom, 0xDD), 16)
        << "pointer (low half), three 32-bit fields";
    EXPECT_DEATH((void)text->length(), "");
    EXPECT_DEATH(text->Append("x"), "");
    EXPECT_DEATH(text->Clear(), "");

    alignas(DataBuffer) unsigned char dataRoom[sizeof(DataBuffer)];
    DataBuffer *data = new (dataRoom) DataBuffer;
    EXPECT_EQ(dataRoom[kMarkOffset], 0xDB);
    data->~DataBuffer();
    EXPECT_EQ(dataRoom[kMarkOffset], 0);
    EXPECT_DEATH((void)data->length(), "");
    EXPECT_DEATH((void)data->AppendByte(1), "");
}
