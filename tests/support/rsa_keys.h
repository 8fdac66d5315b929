// RSA keys and test vectors, and scripted random bytes.
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

// Reads a valid XML key.
void ReadTestKey(const std::string &xml, RsaKey *key);

// Seeds the generator so that its next 20 bytes are these.
void ScriptSeed(const std::string &seed);

} // namespace pavonix::test
