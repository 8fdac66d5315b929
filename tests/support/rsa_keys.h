// RSA keys and vectors kept as data, and random bytes that a test chooses.
#pragma once

#include "rsa/key/rsa_key.h"
#include "support/openssl_key.h"

#include <string>
#include <vector>

namespace pavonix::test {

struct VectorRow {
    bool privateKey;
    std::string seed, message, cipher; // bytes
};

struct TestKey : OpenSslKey {
    int bits = 0;
    std::vector<VectorRow> rows;
};

const std::vector<TestKey> &TestKeys();
const TestKey &KeyOfBits(int bits); // the one with rows

// Reads an XML key that must be readable.
void ReadTestKey(const std::string &xml, RsaKey *key);

// Makes the 20 bytes the next that the random source gives. Its provider is
// scripted so that the generator's first words are these.
void ScriptSeed(const std::string &seed);

} // namespace pavonix::test
