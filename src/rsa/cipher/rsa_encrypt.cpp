#include "rsa/cipher/rsa_encrypt.h"

#include "rsa/cipher/padding/eme_pkcs1.h"
#include "rsa/digest/hash_table.h"
#include "rsa/log/log_context.h"
#include "rsa/log/log_size.h"

#include <algorithm>

namespace pavonix {

namespace {

void LogInputs(std::uint32_t length, const RsaSettings &settings, LogBase &log)
{
    log.logData("KeyType", settings.keyChoice == kPrivateKey ? "Private" : "Public");
    LogSize(log, "InputSize", length);
    if (settings.padding == kPkcs1Padding) {
        log.logData("Padding", "PKCS v1.5");
    } else {
        log.logData("Padding", "OAEP");
        log.logData("HashAlg", FindHash(settings.hashId).name);
        LogSize(log, "ParamLen", settings.labelLength);
    }
    log.logDataLong("ModulusBitLen", settings.key.ModulusBitLength());
}

// The longest piece that one block takes, in 32 bits: a modulus that passes the
// early test for OAEP and is still too small for two digests gives a huge size
// or 0, and the padding then refuses the first piece with its own message.
bool FindBlockSize(const RsaSettings &settings, std::uint32_t *blockSize, LogBase &log)
{
    const std::uint32_t modulusSize = settings.key.N.UnsignedByteSize();
    if (settings.padding == kOaepPadding) {
        const std::uint32_t digestSize = FindHash(settings.hashId).digestSize;
        if (modulusSize <= 2 * digestSize - 2) {
            log.logError("key size (modulus) too small for OAEP padding");
            LogSize(log, "ModulusSizeInBytes", modulusSize);
            LogSize(log, "HashSizeInBytes", digestSize);
            return false;
        }
        *blockSize = modulusSize - 2 * digestSize - 2;
        return true;
    }
    if (modulusSize <= kPkcs1Overhead) {
        log.logError("key size (modulus) too small for PKCS v1.5 padding");
        LogSize(log, "ModulusSizeInBytes", modulusSize);
        return false;
    }
    *blockSize = modulusSize - kPkcs1Overhead;
    return true;
}

// Room for all blocks at once, so that a long text is not copied at every block.
bool ReserveBlocks(std::uint32_t length, std::uint32_t blockSize, const RsaSettings &settings, DataBuffer *output)
{
    const std::uint64_t blocks = blockSize == 0 ? 1 : (std::uint64_t{length} + blockSize - 1) / blockSize;
    const std::uint64_t total = blocks * settings.key.N.UnsignedByteSize();
    return total <= UINT32_MAX && output->EnsureCapacity(static_cast<std::uint32_t>(total));
}

} // namespace

bool EncryptRsa(const std::uint8_t *input, std::uint32_t length, const RsaSettings &settings, DataBuffer *output,
                LogBase &log)
{
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
        if (!EncryptBlock(input + done, piece, settings, output, log)) {
            return false;
        }
        done += piece;
    }
    LogSize(log, "OutputSize", output->length());
    return true;
}

} // namespace pavonix
