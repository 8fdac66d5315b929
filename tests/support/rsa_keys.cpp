#include "support/rsa_keys.h"

#include "rsa/key/key_reader.h"
#include "rsa/log/log_base.h"
#include "rsa/random/r250.h"
#include "support/hex.h"
#include "support/tap.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace pavonix::test {

namespace {

std::vector<TestKey> LoadKeys()
{
    std::ifstream file(TEST_DATA_DIR "/rsa_vectors.txt");
    std::vector<TestKey> keys;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string kind, first, second, third;
        words >> kind >> first >> second >> third;
        if (kind == "key") {
            keys.push_back({OpenSslKey(second, third), std::stoi(first), {}});
        } else {
            keys.back().rows.push_back({kind == "private", FromHex(first), FromHex(second), FromHex(third)});
        }
    }
    return keys;
}

} // namespace

const std::vector<TestKey> &TestKeys()
{
    static const std::vector<TestKey> keys = LoadKeys();
    return keys;
}

const TestKey &KeyOfBits(int bits)
{
    return *std::ranges::find(TestKeys(), bits, &TestKey::bits);
}

void ReadTestKey(const std::string &xml, RsaKey *key)
{
    LogBase log;
    ASSERT_TRUE(ReadKey(xml.c_str(), key, false, log)) << xml;
}

void ScriptSeed(const std::string &seed)
{
    // The generator's first words are words 0 to 4 of its state, xored with words
    // 103 to 107; the top bit of word 3 is always set.
    std::string state(1000, 0);
    state.replace(103 * 4, seed.size(), seed);
    state[106 * 4 + 3] ^= static_cast<char>(0x80);
    tap::TheState().random = state;
    SharedR250().Seed();
}

} // namespace pavonix::test
