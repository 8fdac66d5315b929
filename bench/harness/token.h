// The RSA component, set up as by a purchase.
#pragma once

#include "rsa/cipher/zt_rsa.h"

#include <string>

namespace pavonix::bench {

class TokenMaker {
public:
    explicit TokenMaker(const std::string &keyXml)
    {
        rsa_.put_OAEP(true);
        rsa_.put_EncodingMode("base64");
        ready_ = rsa_.ImportPrivateKey(keyXml.c_str());
    }
    bool Make(ZtString *token) { return ready_ && rsa_.EncryptStringENC("2026-11-21 9:7:3.042", true, token); }

private:
    ZtRsa rsa_;
    bool ready_ = false;
};

// A block as a padding makes it: as long as the modulus, the first byte zero.
inline std::string PaddedBlock(int bits)
{
    std::string block(static_cast<std::size_t>(bits) / 8, 0);
    for (std::size_t i = 1; i < block.size(); ++i) {
        block[i] = static_cast<char>(1 + i * 37);
    }
    return block;
}

} // namespace pavonix::bench
