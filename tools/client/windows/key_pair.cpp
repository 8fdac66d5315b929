// By the system's own cryptography (CNG).
#include "key_pair.h"

#include "exit_code.h"

#include <windows.h>

#include <bcrypt.h>
#include <wincrypt.h>

#include <vector>

namespace client {

namespace {

constexpr int kStep = 64; // the system makes keys of no other sizes

// Takes the number's bytes off the front of *bytes.
std::string Element(const char *name, ULONG count, const BYTE **bytes)
{
    std::string base64((count + 2) / 3 * 4 + 1, '\0');
    auto length = static_cast<DWORD>(base64.size());
    CryptBinaryToStringA(*bytes, count, CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF, base64.data(), &length);
    base64.resize(length);
    *bytes += count;
    return std::string("<") + name + ">" + base64 + "</" + name + ">";
}

std::string Root(const std::string &children)
{
    return "<RSAKeyValue>" + children + "</RSAKeyValue>";
}

// A BCRYPT_RSAFULLPRIVATE_BLOB; empty when the system makes none.
std::vector<BYTE> MakeKey(int bits)
{
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    BCRYPT_KEY_HANDLE key = nullptr;
    std::vector<BYTE> blob(sizeof(BCRYPT_RSAKEY_BLOB) + static_cast<std::size_t>(bits));
    ULONG length = 0;
    const bool made = BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_RSA_ALGORITHM, nullptr, 0) >= 0 &&
                      BCryptGenerateKeyPair(algorithm, &key, static_cast<ULONG>(bits), 0) >= 0 &&
                      BCryptFinalizeKeyPair(key, 0) >= 0 &&
                      BCryptExportKey(key, nullptr, BCRYPT_RSAFULLPRIVATE_BLOB, blob.data(),
                                      static_cast<ULONG>(blob.size()), &length, 0) >= 0;
    if (key != nullptr) {
        BCryptDestroyKey(key);
    }
    if (algorithm != nullptr) {
        BCryptCloseAlgorithmProvider(algorithm, 0);
    }
    blob.resize(made ? length : 0);
    return blob;
}

} // namespace

KeyPair MakeKeyPair(int bits)
{
    if (bits % kStep != 0) {
        throw Failure(ExitCode::kUsage, "--bits must be a multiple of 64: Windows makes no other keys");
    }
    std::vector<BYTE> blob = MakeKey(bits);
    if (blob.empty()) {
        throw Failure(ExitCode::kLocalFailure, "Windows makes no key of " + std::to_string(bits) + " bits");
    }
    const auto &sizes = *reinterpret_cast<const BCRYPT_RSAKEY_BLOB *>(blob.data());
    const BYTE *next = blob.data() + sizeof sizes;
    const std::string exponent = Element("Exponent", sizes.cbPublicExp, &next);
    const std::string publicParts = Element("Modulus", sizes.cbModulus, &next) + exponent;
    std::string primes = Element("P", sizes.cbPrime1, &next);
    primes += Element("Q", sizes.cbPrime2, &next);
    primes += Element("DP", sizes.cbPrime1, &next);
    primes += Element("DQ", sizes.cbPrime2, &next);
    primes += Element("InverseQ", sizes.cbPrime1, &next);
    const std::string d = Element("D", sizes.cbModulus, &next);
    SecureZeroMemory(blob.data(), blob.size());
    return {Root(publicParts), Root(publicParts + primes + d), Root(publicParts + primes)};
}

} // namespace client
