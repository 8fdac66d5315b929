#include "rsa/cipher/rsa_exponentiation.h"

namespace pavonix {

namespace {

bool Fail(LogBase &log, const char *reason)
{
    log.logError(reason);
    return false;
}

// c = m^d mod N from the primes and their exponents. Neither d nor N is needed. No
// part is trusted: for any value, each step has a result or an error code.
bool ApplyPrivateKey(const mp_int &m, const RsaKey &key, mp_int *c, LogBase &log)
{
    mp_int a;
    mp_int b;
    mp_int t;
    if (ExptMod(m, key.dP, key.p, &a) != MP_OKAY) {
        return Fail(log, "Modular exponentiation (1) failed");
    }
    if (ExptMod(m, key.dQ, key.q, &b) != MP_OKAY) {
        return Fail(log, "Modular exponentiation (2) failed");
    }
    if (Sub(a, b, &t) != MP_OKAY) {
        return Fail(log, "Modular exponentiation (3) failed");
    }
    if (MulMod(t, key.qP, key.p, &t) != MP_OKAY) {
        return Fail(log, "Modular exponentiation (4) failed");
    }
    if (Mul(t, key.q, &t) != MP_OKAY) {
        return Fail(log, "Modular exponentiation (5) failed");
    }
    if (Add(t, b, c) != MP_OKAY) {
        return Fail(log, "Modular exponentiation (6) failed");
    }
    return true;
}

bool ApplyKey(const mp_int &m, KeyType exponent, const RsaKey &key, mp_int *c, LogBase &log)
{
    if (exponent == KeyType::kPrivate) {
        return ApplyPrivateKey(m, key, c, log);
    }
    if (ExptMod(m, key.e, key.N, c) != MP_OKAY) {
        return Fail(log, "Modular exponentiation (A) failed");
    }
    return true;
}

// Deliberately not rounded up: with a modulus that does not fill its bytes, a result
// with a leading zero byte is not extended, and its block fails.
std::uint32_t MissingZeros(std::uint32_t inputLength, std::uint32_t resultLength, const RsaKey &key)
{
    const bool whole = inputLength == static_cast<std::uint32_t>(key.ModulusBitLength()) / 8;
    return whole && resultLength > 0 && resultLength < inputLength ? inputLength - resultLength : 0;
}

} // namespace

bool ExponentiateRsa(ByteSpan input, KeyType exponent, const RsaKey &key, LeadingZeros zeros, DataBuffer *output,
                     LogBase &log)
{
    if (exponent != KeyType::kPublic && exponent != KeyType::kPrivate) {
        return Fail(log, "Invalid public/private key choice");
    }
    if (exponent == KeyType::kPrivate && key.type != KeyType::kPrivate) {
        return Fail(log, "Private key required, but not provided");
    }
    mp_int m;
    mp_int c;
    const auto length = static_cast<std::uint32_t>(input.size());
    (void)m.ReadUnsignedBytes(input.data(), length); // out of memory leaves m unusable, and ApplyKey fails
    if (Compare(key.N, m) < 0) {
        return Fail(log, "Invalid RSA input value");
    }
    if (!ApplyKey(m, exponent, key, &c, log)) {
        return false;
    }
    if (c.UnsignedByteSize() > key.N.UnsignedByteSize()) {
        return Fail(log, "Modular exponentiation output size is invalid");
    }
    DataBuffer result;
    if (!c.WriteUnsignedBytes(&result)) {
        return false;
    }
    log.logDataValue("exptmodOutput", result.data(), result.length());
    const std::uint32_t missing = zeros == LeadingZeros::kExtend ? MissingZeros(length, result.length(), key) : 0;
    if (missing > 0) {
        log.logInfo("Zero-extending to match modulus byte length");
    }
    const std::uint32_t total = output->length() + missing + result.length();
    return total == 0 || (output->EnsureCapacity(total) && output->AppendFill(0, missing) &&
                          output->Append(result.data(), result.length()));
}

} // namespace pavonix
