// Makes rsa_vectors.txt with OpenSSL: keys by their primes (the public exponent is
// 65537), and OAEP ciphertexts for given seeds.
//
//     key BITS P Q
//     public SEED MESSAGE CIPHERTEXT    six for one key of each size
//     private SEED MESSAGE CIPHERTEXT   one, with a seed that makes the result begin with a zero byte
//
// g++ -std=c++20 make_rsa_vectors.cpp -lcrypto -o make_rsa_vectors && ./make_rsa_vectors > rsa_vectors.txt
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/rand.h>
#include <openssl/rsa.h>

#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr int kSeedSize = 20;
constexpr int kOverhead = 42;

Bytes scriptedSeed;

int GiveSeed(unsigned char *bytes, int count)
{
    std::memcpy(bytes, scriptedSeed.data(), static_cast<size_t>(count));
    return count == kSeedSize;
}

const RAND_METHOD kScripted = {nullptr, GiveSeed, nullptr, nullptr, nullptr, nullptr};

Bytes RandomBytes(int count)
{
    Bytes bytes(static_cast<size_t>(count));
    RAND_bytes(bytes.data(), count);
    return bytes;
}

void PrintHex(const Bytes &bytes)
{
    std::putchar(' ');
    for (const unsigned char byte : bytes) {
        std::printf("%02x", byte);
    }
}

RSA *MakeKey(int bits)
{
    BN_CTX *context = BN_CTX_new();
    BIGNUM *e = BN_new(), *n = BN_new(), *p = BN_new(), *q = BN_new(), *d = nullptr, *phi = BN_new();
    BN_set_word(e, 65537);
    while (BN_num_bits(n) != bits || d == nullptr) {
        BN_generate_prime_ex(p, (bits + 1) / 2, 0, nullptr, nullptr, nullptr);
        BN_generate_prime_ex(q, bits / 2, 0, nullptr, nullptr, nullptr);
        BN_mul(n, p, q, context);
        BN_sub(phi, n, p);
        BN_sub(phi, phi, q);
        BN_add_word(phi, 1);
        BN_clear_free(d);
        d = BN_mod_inverse(nullptr, e, phi, context); // null when e divides phi
    }
    std::printf("key %d %s %s\n", bits, BN_bn2hex(p), BN_bn2hex(q));
    RSA *rsa = RSA_new();
    RSA_set0_key(rsa, n, e, d);
    return rsa;
}

Bytes Encrypt(RSA *rsa, bool privateKey, const Bytes &seed, const Bytes &message)
{
    Bytes block(static_cast<size_t>(RSA_size(rsa))), cipher(block.size());
    const int size = RSA_size(rsa);
    scriptedSeed = seed;
    RAND_set_rand_method(&kScripted);
    RSA_padding_add_PKCS1_OAEP(block.data(), size, message.data(), static_cast<int>(message.size()), nullptr, 0);
    RAND_set_rand_method(RAND_OpenSSL());
    const auto apply = privateKey ? RSA_private_encrypt : RSA_public_encrypt;
    return apply(size, block.data(), cipher.data(), rsa, RSA_NO_PADDING) == size ? cipher : Bytes();
}

void PrintRow(const char *kind, const Bytes &seed, const Bytes &message, const Bytes &cipher)
{
    std::printf("%s", kind);
    PrintHex(seed);
    PrintHex(message);
    PrintHex(cipher);
    std::putchar('\n');
}

void PrintRows(RSA *rsa)
{
    const int longest = RSA_size(rsa) - kOverhead;
    for (const int length : {1, 20, 28, 64, longest - 1, longest}) {
        const Bytes seed = RandomBytes(kSeedSize), message = RandomBytes(length);
        PrintRow("public", seed, message, Encrypt(rsa, false, seed, message));
    }
    Bytes seed, cipher(1, 1);
    const Bytes message = RandomBytes(23);
    while (cipher[0] != 0) {
        seed = RandomBytes(kSeedSize);
        cipher = Encrypt(rsa, true, seed, message);
    }
    PrintRow("private", seed, message, cipher);
}

} // namespace

int main()
{
    for (const int bits : {1023, 1024, 1025, 1026, 1027, 1028, 1029, 1030, 1031, 1536, 2048}) {
        PrintRows(MakeKey(bits));
        for (int i = 1; bits != 1023 && i < 5; ++i) {
            MakeKey(bits);
        }
    }
    for (const int bits : {96, 344, 368}) { // 12, 43 and 46 bytes
        MakeKey(bits);
    }
}
