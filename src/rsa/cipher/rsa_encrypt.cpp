#include "rsa/cipher/rsa_encrypt.h"

#include "rsa/cipher/padding/eme_oaep.h"
#include "rsa/cipher/padding/eme_pkcs1.h"
#include "rsa/cipher/rsa_exponentiation.h"
#include "rsa/digest/hash_table.h"

#include <algorithm>

namespace pavonix {

namespace {

void LogInputs(std::uint32_t length, const RsaSettings &settings, LogBase &log)
{
    log.logData("KeyType", settings.exponent == KeyType::kPrivate ? "Private" : "Public");
    log.logSize("InputSize", length);
    if (settings.padding == RsaPadding::kPkcs1) {
        log.logData("Padding", "PKCS v1.5");
    } else {
        log.logData("Padding", "OAEP");
        log.logData("HashAlg", FindHash(settings.hash).name);
        log.logSize("ParamLen", static_cast<std::uint32_t>(settings.label.size()));
    }
    log.logDataLong("ModulusBitLen", settings.key.ModulusBitLength());
}

// The longest piece that fits in one block, in 32-bit arithmetic: a modulus that passes
// the early test for OAEP and is still too small for two digests gives a huge size or
// 0, and the padding then rejects the first piece with its own message.
bool FindBlockSize(const RsaSettings &settings, std::uint32_t *blockSize, LogBase &log)
{
    const std::uint32_t modulusSize = settings.key.N.UnsignedByteSize();
    if (settings.padding == RsaPadding::kOaep) {
        const std::uint32_t digestSize = FindHash(settings.hash).digestSize;
        if (modulusSize <= 2 * digestSize - 2) {
            log.logError("key size (modulus) too small for OAEP padding");
            log.logSize("ModulusSizeInBytes", modulusSize);
            log.logSize("HashSizeInBytes", digestSize);
            return false;
        }
        *blockSize = modulusSize - 2 * digestSize - 2;
        return true;
    }
    if (modulusSize <= kPkcs1Overhead) {
        log.logError("key size (modulus) too small for PKCS v1.5 padding");
        log.logSize("ModulusSizeInBytes", modulusSize);
        return false;
    }
    *blockSize = modulusSize - kPkcs1Overhead;
    return true;
}

// Reserves all blocks at once, so that a long text is not copied at every block.
bool ReserveBlocks(std::uint32_t length, std::uint32_t blockSize, const RsaSettings &settings, DataBuffer *output)
{
    const std::uint64_t blocks = blockSize == 0 ? 1 : (std::uint64_t{length} + blockSize - 1) / blockSize;
    const std::uint64_t total = blocks * settings.key.N.UnsignedByteSize();
    return total <= UINT32_MAX && output->EnsureCapacity(static_cast<std::uint32_t>(total));
}

void LogVerbose(const RsaSettings &settings, LogBase &log, const char *tag, const DataBuffer &bytes)
{
    if (settings.verbose) {
        log.logDataValue(tag, bytes.data(), bytes.length());
    }
}

bool Pad(ByteSpan piece, const RsaSettings &settings, DataBuffer *padded, LogBase &log)
{
    const bool oaep = settings.padding == RsaPadding::kOaep;
    const std::int32_t bitLength = settings.key.ModulusBitLength();
    if (settings.verbose) {
        log.logData("padding", oaep ? "OAEP" : "PKCS 1.5");
    }
    if (oaep) {
        return EncodeOaep(piece, settings.label, bitLength, settings.hash, padded, log);
    }
    // Random filler for the private key too: the blocks are ciphertexts, not signatures.
    return EncodePkcs1(piece, kEncryptionBlock, bitLength, padded, log);
}

// Reverses each word of four bytes, not the block; also a last word of two or three.
void SwapWords(DataBuffer *bytes)
{
    for (std::uint32_t at = 0; at < bytes->length(); at += 4) {
        std::uint8_t *word = bytes->data() + at;
        std::reverse(word, word + std::min<std::uint32_t>(4, bytes->length() - at));
    }
}

// Appends one ciphertext block, as long as the modulus, to `output`. False, with the
// reason logged, when the piece does not fit or its result has another length.
bool EncryptBlock(ByteSpan piece, const RsaSettings &settings, DataBuffer *output, LogBase &log)
{
    if (settings.verbose) {
        log.logDataLong("modulus_bitlen", settings.key.ModulusBitLength());
        log.logDataLong("littleEndian", settings.littleEndian ? 1 : 0);
    }
    DataBuffer padded;
    if (!Pad(piece, settings, &padded, log)) {
        return false;
    }
    LogVerbose(settings, log, "paddedData", padded);

    DataBuffer encrypted;
    const bool success =
        ExponentiateRsa(padded.bytes(), settings.exponent, settings.key, LeadingZeros::kExtend, &encrypted, log);
    if (encrypted.length() != settings.key.N.UnsignedByteSize()) {
        log.logError("Output of RSA encryption not equal to modulus size.");
        log.logSize("InLength", padded.length());
        log.logSize("OutputLength", encrypted.length());
        return false;
    }
    LogVerbose(settings, log, "encryptedData", encrypted);
    if (!settings.littleEndian) {
        SwapWords(&encrypted);
    }
    return output->Append(encrypted.data(), encrypted.length()) && success;
}

} // namespace

bool EncryptRsa(ByteSpan input, const RsaSettings &settings, DataBuffer *output, LogBase &log)
{
    const auto length = static_cast<std::uint32_t>(input.size());
    const LogContext context(log, "RSA_encrypt");
    LogInputs(length, settings, log);
    output->Clear();
    std::uint32_t blockSize = 0;
    if (!FindBlockSize(settings, &blockSize, log)) {
        return false;
    }
    if (length > 0 && !ReserveBlocks(length, blockSize, settings, output)) {
        return false;
    }
    for (std::uint32_t done = 0; done < length;) {
        const std::uint32_t piece = std::min(length - done, blockSize);
        if (!EncryptBlock(input.subspan(done, piece), settings, output, log)) {
            return false;
        }
        done += piece;
    }
    log.logSize("OutputSize", output->length());
    return true;
}

} // namespace pavonix
