#include "key_pair.h"

#include "exit_code.h"

#include <windows.h>

#include <bcrypt.h>
#include <wincrypt.h>

#include <vector>

namespace client {

namespace {

constexpr int kStep = 64; // of the key sizes that CNG supports

// Advances *bytes past the number.
std::string Number(ULONG count, const BYTE **bytes)
{
    std::string base64((count + 2) / 3 * 4 + 1, '\0');
    auto length = static_cast<DWORD>(base64.size());
    CryptBinaryToStringA(*bytes, count, CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF, base64.data(), &length);
    base64.resize(length);
    *bytes += count;
    return base64;
}

// Returns a BCRYPT_RSAFULLPRIVATE_BLOB; empty on failure.
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
        throw Failure(ExitCode::kUsage, "--bits must be a multiple of 64 on Windows");
    }
    std::vector<BYTE> blob = MakeKey(bits);
    if (blob.empty()) {
        throw Failure(ExitCode::kLocalFailure, "Windows cannot generate a key of " + std::to_string(bits) + " bits");
    }
    const auto &sizes = *reinterpret_cast<const BCRYPT_RSAKEY_BLOB *>(blob.data());
    const BYTE *next = blob.data() + sizeof sizes;
    KeyPair keys;
    keys.exponent = Number(sizes.cbPublicExp, &next);
    keys.modulus = Number(sizes.cbModulus, &next);
    keys.p = Number(sizes.cbPrime1, &next);
    keys.q = Number(sizes.cbPrime2, &next);
    keys.dp = Number(sizes.cbPrime1, &next);
    keys.dq = Number(sizes.cbPrime2, &next);
    keys.inverseQ = Number(sizes.cbPrime1, &next);
    keys.d = Number(sizes.cbModulus, &next);
    SecureZeroMemory(blob.data(), blob.size());
    return keys;
}

} // namespace client
