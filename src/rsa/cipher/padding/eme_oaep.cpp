#include "rsa/cipher/padding/eme_oaep.h"

#include "rsa/cipher/padding/mgf1.h"
#include "rsa/digest/hash_table.h"
#include "rsa/random/r250.h"

namespace pavonix {

namespace {

constexpr std::int32_t kDbMaskSite = 100;
constexpr std::int32_t kSeedMaskSite = 101;

bool FitsModulus(std::uint32_t messageLength, std::uint32_t encodedLength, std::uint32_t digestSize, LogBase &log)
{
    if (encodedLength < 2 * digestSize + 3) {
        log.logError("Encoded message size too small given hash size in OAEP");
        log.logSize("EncodedLen", encodedLength);
        log.logSize("HashLen", digestSize);
        return false;
    }
    if (messageLength > encodedLength - 2 * digestSize - 2) {
        log.logError("Message length too large for OAEP");
        log.logSize("EncodedLen", encodedLength);
        log.logSize("HashLen", digestSize);
        log.logSize("MessageLen", messageLength);
        return false;
    }
    return true;
}

// Xors `length` bytes at `target` with the mask that `seed` gives.
bool ApplyMask(std::int32_t callSite, std::int32_t hashId, const std::uint8_t *seed, std::uint32_t seedLength,
               std::uint8_t *target, std::uint32_t length, LogBase &log)
{
    DataBuffer mask;
    if (!mask.EnsureCapacity(length) || !Mgf1(callSite, hashId, seed, seedLength, length, &mask, log)) {
        return false;
    }
    for (std::uint32_t i = 0; i < length; ++i) {
        target[i] ^= mask.data()[i];
    }
    return true;
}

} // namespace

bool EncodeOaep(const std::uint8_t *message, std::uint32_t messageLength, const std::uint8_t *label,
                std::uint32_t labelLength, std::int32_t modulusBitLength, std::int32_t hashId, DataBuffer *output,
                LogBase &log)
{
    output->Clear();
    if (message == nullptr) {
        log.logError("null input to OAEP encoder");
        return false;
    }
    const std::uint32_t digestSize = FindHash(hashId).digestSize;
    const std::uint32_t encodedLength = (static_cast<std::uint32_t>(modulusBitLength) + 7) / 8;
    if (!FitsModulus(messageLength, encodedLength, digestSize, log)) {
        return false;
    }
    std::uint8_t labelDigest[kLongestDigest];
    ComputeDigest(hashId, label, label != nullptr ? labelLength : 0, labelDigest);

    // The encoded message is put together in the clear: a zero byte, the seed, and
    // the data block, that is digest, zeros, a one byte and the message. Then the
    // seed masks the data block, and the masked data block the seed.
    const std::uint32_t zeros = encodedLength - messageLength - 2 * digestSize - 2;
    const bool assembled = output->EnsureCapacity(encodedLength) && output->AppendByte(0) &&
                           SharedR250().AppendBytes(digestSize, output) && output->Append(labelDigest, digestSize) &&
                           output->AppendFill(0, zeros) && output->AppendByte(1) &&
                           output->Append(message, messageLength);
    if (!assembled || output->length() != encodedLength) {
        log.logError("OAEP encoding output size error");
        log.logSize("OutputSize", output->length());
        log.logSize("ExpectedSize", encodedLength);
        output->Clear();
        return false;
    }
    std::uint8_t *seed = output->data() + 1;
    std::uint8_t *block = seed + digestSize;
    const std::uint32_t blockLength = encodedLength - digestSize - 1;
    const bool masked = ApplyMask(kDbMaskSite, hashId, seed, digestSize, block, blockLength, log) &&
                        ApplyMask(kSeedMaskSite, hashId, block, blockLength, seed, digestSize, log);
    if (!masked) {
        output->Clear();
    }
    return masked;
}

} // namespace pavonix
