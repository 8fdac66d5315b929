#include "rsa/random/r250.h"
#include "support/tap.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <memory>

using namespace pavonix;
using namespace pavonix::test;

namespace {

constexpr char kAcquire[] = "AcquireProvider(Microsoft Base Cryptographic Provider v1.0,1,";
using Calls = std::vector<std::string>;

// Scripts the next seeding from a line of r250.txt.
void Prepare(const std::string &source, const std::string &value)
{
    tap::Reset();
    if (source == "seed") {
        tap::TheState().random = FromHex(value);
    } else {
        tap::FailAlways("GenerateRandom");
        tap::UseClock(tap::Clock{{}, static_cast<std::uint32_t>(std::stoul(value))});
    }
}

bool FirstInstanceSeedsOnce()
{
    tap::UseClock(tap::Clock{{}, 77});
    const ZentorpRand first;
    const ZentorpRand second;
    DataBuffer output;
    const bool appended = SharedR250().AppendBytes(8, &output) && SharedR250().AppendNonZeroBytes(8, &output);
    const Calls expected = {"SeedRand(77)", kAcquire + std::string("f0000000)"), "GenerateRandom(1000)"};
    return appended && output.length() == 16 && tap::Calls() == expected;
}

} // namespace

// Seeds of random bytes, zeros, ones, and 31-bit rand numbers. Every result depends on the
// exact number of earlier steps.
TEST(R250, AgreesWithASecondImplementation)
{
    std::ifstream lines(TEST_DATA_DIR "/r250.txt");
    std::unique_ptr<R250> generator;
    int results = 0;
    for (std::string kind, value; lines >> kind >> value;) {
        if (kind == "seed" || kind == "rand") {
            Prepare(kind, value);
            generator = std::make_unique<R250>();
            continue;
        }
        std::string expected;
        lines >> expected;
        const auto count = static_cast<std::uint32_t>(std::stoul(value));
        DataBuffer output;
        ASSERT_TRUE(output.AppendByte('x'));
        ASSERT_TRUE(kind == "bytes" ? generator->AppendBytes(count, &output)
                                    : generator->AppendNonZeroBytes(count, &output));
        ASSERT_EQ(BytesOf(output), std::string("x").append(FromHex(expected))) << kind << ' ' << count;
        ++results;
        EXPECT_EQ(tap::CountOf("GenerateRandom"), 1) << "seeded again";
    }
    EXPECT_EQ(results, 4 * 8);
}

TEST(R250, TriesTheProviderInOrderAndReleasesWhatItAcquired)
{
    const std::string seedRand = "SeedRand(77)";
    const struct {
        void (*fail)();
        Calls calls;
    } rows[] = {
        {[] {}, {kAcquire + std::string("f0000000)"), "GenerateRandom(1000)"}},
        {[] { tap::FailNth(1, false); },
         {kAcquire + std::string("f0000000)"), kAcquire + std::string("f0000008)"), "GenerateRandom(1000)"}},
        {[] { tap::FailAlways("AcquireProvider"); },
         {kAcquire + std::string("f0000000)"), kAcquire + std::string("f0000008)"), kAcquire + std::string("f0000020)"),
          kAcquire + std::string("f0000028)"), seedRand}},
        {[] { tap::FailAlways("GenerateRandom"); },
         {kAcquire + std::string("f0000000)"), "GenerateRandom(1000)", seedRand}},
    };
    for (const auto &row : rows) {
        tap::Reset();
        tap::UseClock(tap::Clock{{}, 77});
        row.fail();
        R250 generator;
        DataBuffer output;
        EXPECT_TRUE(generator.AppendBytes(0, &output));
        EXPECT_EQ(tap::Calls(), row.calls);
        EXPECT_EQ(tap::Held().providers, 0);
        EXPECT_EQ(output.length(), 0u);
    }
}

TEST(R250, AllocatesOnlyTheNeededBytesAndReportsFailures)
{
    R250 generator;
    DataBuffer output;
    ASSERT_TRUE(generator.AppendBytes(20, &output));
    EXPECT_EQ(output.capacity(), 20u);

    tap::FailNth(1, false);
    EXPECT_FALSE(generator.AppendNonZeroBytes(1, &output));
    EXPECT_EQ(output.length(), 0u);

    ASSERT_TRUE(output.AppendByte('x'));
    EXPECT_FALSE(generator.AppendBytes(UINT32_MAX, &output)) << "the length would wrap";
    EXPECT_EQ(output.length(), 0u);
}

TEST(R250, TheFirstInstanceSeedsTheWholeProcessOnce)
{
    // in a new process, because other tests may have seeded the shared generator
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::_Exit(FirstInstanceSeedsOnce() ? 0 : 1), testing::ExitedWithCode(0), "");
}
