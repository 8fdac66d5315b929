#include "token/rsa_key.h"

#include <boost/multiprecision/cpp_int.hpp>

#include <stdexcept>

#include <windows.h>

#include <bcrypt.h>
#include <wincrypt.h>

namespace token {

using Number = boost::multiprecision::cpp_int;

struct RsaKey {
    Number modulus;
    Number exponent;
};

namespace {

Number ToNumber(ByteSpan bytes)
{
    Number number;
    boost::multiprecision::import_bits(number, bytes.begin(), bytes.end());
    return number;
}

// Big-endian, at least so many bytes.
Bytes ToBytes(const Number &number, std::size_t size)
{
    Bytes bytes;
    boost::multiprecision::export_bits(number, std::back_inserter(bytes), 8);
    bytes.insert(bytes.begin(), size - std::min(size, bytes.size()), 0);
    return bytes;
}

// The content of a DER structure: the key's is SEQUENCE { INTEGER modulus, INTEGER exponent }, which CryptoAPI decodes
// to a header, the exponent and the modulus from its lowest byte.
Bytes Decode(LPCSTR type, const Bytes &der)
{
    DWORD size = 0;
    Bytes decoded;
    if (CryptDecodeObjectEx(X509_ASN_ENCODING, type, der.data(), static_cast<DWORD>(der.size()), 0, nullptr, nullptr,
                            &size) != 0) {
        decoded.resize(size);
    }
    if (size == 0 || CryptDecodeObjectEx(X509_ASN_ENCODING, type, der.data(), static_cast<DWORD>(der.size()), 0,
                                         nullptr, decoded.data(), &size) == 0) {
        throw std::runtime_error("the PEM text contains no RSA public key");
    }
    return decoded;
}

Bytes Encode(LPCSTR type, const void *structure)
{
    DWORD size = 0;
    CryptEncodeObjectEx(X509_ASN_ENCODING, type, structure, 0, nullptr, nullptr, &size);
    Bytes der(size);
    if (size == 0 || CryptEncodeObjectEx(X509_ASN_ENCODING, type, structure, 0, nullptr, der.data(), &size) == 0) {
        throw std::runtime_error("the public key cannot be encoded");
    }
    return der;
}

struct BlobHead {
    BLOBHEADER blob;
    RSAPUBKEY key;
};

} // namespace

PublicKey MakePublicKey(ByteSpan modulus, ByteSpan exponent)
{
    auto key = std::make_shared<RsaKey>(ToNumber(modulus), ToNumber(exponent));
    if (key->modulus < 3 || key->exponent < 1 || key->exponent > 0xFFFFFFFFU) {
        throw std::runtime_error("modulus and exponent do not form an RSA key");
    }
    return key;
}

PublicKey ReadPem(const std::string &text)
{
    DWORD size = static_cast<DWORD>(text.size());
    Bytes der(size);
    if (CryptStringToBinaryA(text.c_str(), static_cast<DWORD>(text.size()), CRYPT_STRING_BASE64HEADER, der.data(),
                             &size, nullptr, nullptr) == 0) {
        throw std::runtime_error("the PEM text contains no RSA public key");
    }
    der.resize(size);
    const Bytes outer = Decode(X509_PUBLIC_KEY_INFO, der);
    const auto &info = *reinterpret_cast<const CERT_PUBLIC_KEY_INFO *>(outer.data());
    if (std::string_view(info.Algorithm.pszObjId) != szOID_RSA_RSA) {
        throw std::runtime_error("the PEM text contains no RSA public key");
    }
    const Bytes blob =
        Decode(RSA_CSP_PUBLICKEYBLOB, Bytes(info.PublicKey.pbData, info.PublicKey.pbData + info.PublicKey.cbData));
    const auto &head = *reinterpret_cast<const BlobHead *>(blob.data());
    return std::make_shared<RsaKey>(ToNumber(Bytes(blob.rbegin(), blob.rend() - sizeof head)), Number(head.key.pubexp));
}

std::string PublicKeyToPem(const PublicKey &key)
{
    const Bytes modulus = ModulusOf(key);
    BlobHead head{{PUBLICKEYBLOB, CUR_BLOB_VERSION, 0, CALG_RSA_KEYX},
                  {0x31415352, static_cast<DWORD>(modulus.size() * 8), static_cast<DWORD>(key->exponent)}};
    Bytes blob(reinterpret_cast<unsigned char *>(&head), reinterpret_cast<unsigned char *>(&head + 1));
    blob.insert(blob.end(), modulus.rbegin(), modulus.rend());
    Bytes inner = Encode(RSA_CSP_PUBLICKEYBLOB, blob.data());
    CERT_PUBLIC_KEY_INFO info{};
    info.Algorithm.pszObjId = const_cast<char *>(szOID_RSA_RSA);
    unsigned char none[] = {5, 0}; // DER for "no parameters"
    info.Algorithm.Parameters = {sizeof none, none};
    info.PublicKey = {static_cast<DWORD>(inner.size()), inner.data(), 0};
    const Bytes der = Encode(X509_PUBLIC_KEY_INFO, &info);
    std::string base64(der.size() * 2 + 64, '\0');
    DWORD length = static_cast<DWORD>(base64.size());
    CryptBinaryToStringA(der.data(), static_cast<DWORD>(der.size()), CRYPT_STRING_BASE64 | CRYPT_STRING_NOCR,
                         base64.data(), &length);
    base64.resize(length);
    return "-----BEGIN PUBLIC KEY-----\n" + base64 + "-----END PUBLIC KEY-----\n";
}

int ModulusBits(const PublicKey &key)
{
    return static_cast<int>(boost::multiprecision::msb(key->modulus)) + 1;
}

Bytes ModulusOf(const PublicKey &key)
{
    return ToBytes(key->modulus, 0);
}

Bytes RaiseToExponent(ByteSpan number, const PublicKey &key)
{
    const Number base = ToNumber(number);
    return base < key->modulus ? ToBytes(Number(powm(base, key->exponent, key->modulus)), number.size()) : Bytes();
}

Sha1Digest Sha1(ByteSpan bytes)
{
    static const BCRYPT_ALG_HANDLE kDigest = [] {
        BCRYPT_ALG_HANDLE handle = nullptr;
        BCryptOpenAlgorithmProvider(&handle, BCRYPT_SHA1_ALGORITHM, nullptr, 0);
        return handle;
    }();
    BCRYPT_HASH_HANDLE hash = nullptr;
    Sha1Digest digest;
    const bool done =
        BCryptCreateHash(kDigest, &hash, nullptr, 0, nullptr, 0, 0) == 0 &&
        BCryptHashData(hash, const_cast<unsigned char *>(bytes.data()), static_cast<ULONG>(bytes.size()), 0) == 0 &&
        BCryptFinishHash(hash, digest.data(), static_cast<ULONG>(digest.size()), 0) == 0;
    BCryptDestroyHash(hash);
    if (!done) {
        throw std::runtime_error("the digest SHA-1 is not available");
    }
    return digest;
}

} // namespace token
