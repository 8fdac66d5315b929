#include "rsa/cipher/block_encryption.h"

#include "rsa/cipher/padding/eme_oaep.h"
#include "rsa/cipher/padding/eme_pkcs1.h"
#include "rsa/cipher/rsa_exponentiation.h"
#include "rsa/log/log_size.h"

#include <algorithm>

namespace pavonix {

namespace {

void LogVerbose(const RsaSettings &settings, LogBase &log, const char *tag, const DataBuffer &bytes)
{
    if (settings.verbose) {
        log.logDataValue(tag, bytes.data(), bytes.length());
    }
}

bool Pad(const std::uint8_t *piece, std::uint32_t length, const RsaSettings &settings, DataBuffer *padded, LogBase &log)
{
    const bool oaep = settings.padding == kOaepPadding;
    const std::int32_t bitLength = settings.key.ModulusBitLength();
    if (settings.verbose) {
        log.logData("padding", oaep ? "OAEP" : "PKCS 1.5");
    }
    if (oaep) {
        return EncodeOaep(piece, length, settings.label, settings.labelLength, bitLength, settings.hashId, padded, log);
    }
    // Random filler for the private key too: the blocks are ciphertexts, not signatures.
    return EncodePkcs1(piece, length, kEncryptionBlock, bitLength, padded, log);
}

// Each word of four bytes for itself, not the block; a tail of two or three bytes
// likewise.
void SwapWords(DataBuffer *bytes)
{
    for (std::uint32_t at = 0; at < bytes->length(); at += 4) {
        std::uint8_t *word = bytes->data() + at;
        std::reverse(word, word + std::min<std::uint32_t>(4, bytes->length() - at));
    }
}

} // namespace

bool EncryptBlock(const std::uint8_t *piece, std::uint32_t length, const RsaSettings &settings, DataBuffer *output,
                  LogBase &log)
{
    if (settings.verbose) {
        log.logDataLong("modulus_bitlen", settings.key.ModulusBitLength());
        log.logDataLong("littleEndian", settings.littleEndian ? 1 : 0);
    }
    DataBuffer padded;
    if (!Pad(piece, length, settings, &padded, log)) {
        return false;
    }
    LogVerbose(settings, log, "paddedData", padded);

    DataBuffer encrypted;
    const bool success =
        ExponentiateRsa(padded.data(), padded.length(), settings.keyChoice, settings.key, true, &encrypted, log);
    if (encrypted.length() != settings.key.N.UnsignedByteSize()) {
        log.logError("Output of RSA encryption not equal to modulus size.");
        LogSize(log, "InLength", padded.length());
        LogSize(log, "OutputLength", encrypted.length());
        return false;
    }
    LogVerbose(settings, log, "encryptedData", encrypted);
    if (!settings.littleEndian) {
        SwapWords(&encrypted);
    }
    return output->Append(encrypted.data(), encrypted.length()) && success;
}

} // namespace pavonix
