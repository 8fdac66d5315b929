#include "rsa/digest/hash_table.h"
#include "rsa/digest/md2.h"
#include "rsa/digest/sha1.h"
#include "rsa/digest/sha2.h"
#include "support/hex.h"
#include "support/texts.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <random>

using namespace pavonix;
using namespace pavonix::test;

namespace {

constexpr char kUntouched = '\xEE';

// The whole buffer, so that bytes written after the digest are seen.
std::string Digest(int hashId, const std::string &text)
{
    std::string room(kLongestDigest, kUntouched);
    ComputeDigest(HashId{hashId}, Bytes(text), reinterpret_cast<std::uint8_t *>(room.data()));
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

template <typename Hash>
std::string InPieces(const std::string &text, std::size_t step)
{
    Hash hash;
    for (std::size_t at = 0; at < text.size(); at += step) {
        hash.Update(text.data() + at, static_cast<std::uint32_t>(std::min(step, text.size() - at)));
    }
    std::string room(kLongestDigest, kUntouched);
    hash.Finish(reinterpret_cast<std::uint8_t *>(room.data()));
    return room;
}

} // namespace

// RFC 1319, appendix A.5: OpenSSL no longer has MD2 to compare with.
TEST(Digest, Md2GivesThePublishedVectors)
{
    const char *rows[][2] = {
        {"", "8350e5a3e24c153df2275c9f80692773"},
        {"abc", "da853b0d3f88d99b30283a69e6ded6bb"},
        {"abcdefghijklmnopqrstuvwxyz", "4e8ddff3650292ab5a4108c3aa47940b"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "d5976f79d83d3a0dc9806c3c66f3efd8"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(Digest(4, row[0]), FromHex(row[1]) + std::string(48, kUntouched)) << row[0];
    }
}

// Every length around the block sizes, and a bit count of three bytes.
TEST(Digest, EveryRowAgreesWithOpenSsl)
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
        EXPECT_STREQ(FindHash(HashId{row.id}).name, row.name);
        EXPECT_EQ(FindHash(HashId{row.id}).digestSize, static_cast<std::uint32_t>(EVP_MD_get_size(row.reference)));
        for (std::size_t length = 0; length <= 301; ++length) {
            const std::string text = RandomText(length <= 300 ? length : 1000000);
            std::string expected(kLongestDigest, kUntouched);
            EVP_Digest(text.data(), text.size(), reinterpret_cast<unsigned char *>(expected.data()), nullptr,
                       row.reference, nullptr);
            ASSERT_EQ(Digest(row.id, text), expected) << row.name << " of " << text.size() << " bytes";
        }
    }
}

TEST(Digest, PiecesGiveTheDigestOfTheWhole)
{
    const std::string text = RandomText(300);
    for (std::size_t step = 1; step < text.size(); ++step) {
        ASSERT_EQ(InPieces<Md2>(text, step), Digest(4, text)) << step;
        ASSERT_EQ(InPieces<Sha1>(text, step), Digest(1, text)) << step;
        ASSERT_EQ(InPieces<Sha384>(text, step), Digest(2, text)) << step;
    }
}

TEST(Digest, AnUnknownIdentifierReports16BytesButComputesSha1)
{
    for (const int id : {0, 6, 8, -1}) {
        EXPECT_STREQ(FindHash(HashId{id}).name, "Unknown");
        EXPECT_EQ(FindHash(HashId{id}).digestSize, 16u);
        EXPECT_EQ(Digest(id, "abc"), Digest(1, "abc"));
    }
    EXPECT_STREQ(FindHash(HashId::kMd2).name, "MD2");
    EXPECT_EQ(FindHash(HashId::kMd2).digestSize, 16u);
}
