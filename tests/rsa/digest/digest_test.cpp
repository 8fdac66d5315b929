#include "rsa/digest/hash_table.h"
#include "rsa/digest/md2.h"
#include "rsa/digest/sha1.h"
#include "rsa/digest/sha2.h"
#include "support/hex.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <array>
#include <random>
#include <string>

using namespace pavonix;
using pavonix::test::FromHex;

namespace {

constexpr std::uint8_t kUntouched = 0xEE;
using Room = std::array<std::uint8_t, kLongestDigest>;

std::string First(const Room &room, std::size_t count)
{
    return std::string(room.begin(), room.begin() + static_cast<std::ptrdiff_t>(count));
}

Room Digest(int hashId, const std::string &text)
{
    Room room;
    room.fill(kUntouched);
    ComputeDigest(hashId, text.data(), static_cast<std::uint32_t>(text.size()), room.data());
    return room;
}

std::string RandomText(std::size_t length)
{
    static std::mt19937 generator(20);
    std::string text(length, 0);
    for (char &character : text) {
        character = static_cast<char>(generator());
    }
    return text;
}

// One Update for each piece of at most `step` bytes.
template <typename Hash>
std::string InPieces(const std::string &text, std::size_t step)
{
    Hash hash;
    for (std::size_t at = 0; at < text.size(); at += step) {
        const std::string piece = text.substr(at, step);
        hash.Update(piece.data(), static_cast<std::uint32_t>(piece.size()));
    }
    Room room;
    hash.Finish(room.data());
    return First(room, Hash::kDigestSize);
}

} // namespace

// RFC 1319, appendix A.5: OpenSSL no longer has MD2 to compare with.
TEST(Digest, Md2GivesThePublishedVectors)
{
    const struct {
        const char *text, *digest;
    } rows[] = {
        {"", "8350e5a3e24c153df2275c9f80692773"},
        {"a", "32ec01ec4a6dac72c0ab96fb34c0b5d1"},
        {"abc", "da853b0d3f88d99b30283a69e6ded6bb"},
        {"message digest", "ab4f496bfb2a530b219ff33031fe06b0"},
        {"abcdefghijklmnopqrstuvwxyz", "4e8ddff3650292ab5a4108c3aa47940b"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789", "da33def2a42df13975352846c30338cd"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "d5976f79d83d3a0dc9806c3c66f3efd8"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(First(Digest(4, row.text), 16), FromHex(row.digest)) << row.text;
    }
}

// The rows of the table, the padding at every length around the block sizes, and
// that no more than the digest is written.
TEST(Digest, EveryRowAgreesWithOpenSslAtEveryLength)
{
    const struct {
        int id;
        const char *name;
        const EVP_MD *reference;
    } rows[] = {
        {1, "SHA-1", EVP_sha1()}, {2, "SHA-384", EVP_sha384()}, {3, "SHA-512", EVP_sha512()},
        {5, "MD5", EVP_md5()},    {7, "SHA-256", EVP_sha256()},
    };
    for (const auto &row : rows) {
        const std::uint32_t size = FindHash(row.id).digestSize;
        EXPECT_STREQ(FindHash(row.id).name, row.name);
        for (std::size_t length = 0; length <= 300; ++length) {
            const std::string text = RandomText(length);
            Room expected;
            expected.fill(kUntouched);
            unsigned expectedSize = 0;
            EVP_Digest(text.data(), length, expected.data(), &expectedSize, row.reference, nullptr);
            ASSERT_EQ(size, expectedSize) << row.name;
            ASSERT_EQ(Digest(row.id, text), expected) << row.name << " of " << length << " bytes";
        }
    }
}

// FIPS 180 vector; a count of bits beyond one byte, two bytes and three.
TEST(Digest, AMillionLettersGiveThePublishedDigest)
{
    const std::string letters(1000000, 'a');
    EXPECT_EQ(First(Digest(1, letters), 20), FromHex("34aa973cd4c4daa4f61eeb2bdbad27316534016f"));
    EXPECT_EQ(First(Digest(7, letters), 32),
              FromHex("cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"));
}

TEST(Digest, PiecesGiveTheDigestOfTheWhole)
{
    const std::string text = RandomText(300);
    for (std::size_t step = 1; step < text.size(); ++step) {
        ASSERT_EQ(InPieces<Md2>(text, step), First(Digest(4, text), 16)) << step;
        ASSERT_EQ(InPieces<Sha1>(text, step), First(Digest(1, text), 20)) << step;
        ASSERT_EQ(InPieces<Sha384>(text, step), First(Digest(2, text), 48)) << step;
    }
}

TEST(Digest, AnUnknownIdentifierSays16BytesYetComputesSha1)
{
    for (const int id : {0, 6, 8, -1}) {
        EXPECT_STREQ(FindHash(id).name, "Unknown");
        EXPECT_EQ(FindHash(id).digestSize, 16u);
        EXPECT_EQ(Digest(id, "abc"), Digest(1, "abc"));
    }
    EXPECT_STREQ(FindHash(4).name, "MD2");
    EXPECT_EQ(FindHash(4).digestSize, 16u);
}
