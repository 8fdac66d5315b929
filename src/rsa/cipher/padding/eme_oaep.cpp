#include "rsa/cipher/padding/eme_oaep.h"

#include "rsa/cipher/padding/mgf1.h"
#include "rsa/digest/hash_table.h"
#include "rsa/random/r250.h"

namespace pavonix {

namespace {

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

// Xors the target with the mask that is made from `seed`.
bool ApplyMask(MgfSite site, HashId hash, ByteSpan seed, std::span<std::uint8_t> target, LogBase &log)
{
    const auto length = static_cast<std::uint32_t>(target.size());
    DataBuffer mask;
    if (!mask.EnsureCapacity(length) || !Mgf1(site, hash, seed, length, &mask, log)) {
        return false;
    }
    for (std::uint32_t i = 0; i < length; ++i) {
        target[i] ^= mask.data()[i];
    }
    return true;
}

} // namespace

bool EncodeOaep(ByteSpan message, ByteSpan label, std::int32_t modulusBitLength, HashId hash, DataBuffer *output,
                LogBase &log)
{
    output->Clear();
    if (message.data() == nullptr) {
        log.logError("null input to OAEP encoder");
        return false;
    }
    const auto messageLength = static_cast<std::uint32_t>(message.size());
    const std::uint32_t digestSize = FindHash(hash).digestSize;
    const std::uint32_t encodedLength = (static_cast<std::uint32_t>(modulusBitLength) + 7) / 8;
    if (!FitsModulus(messageLength, encodedLength, digestSize, log)) {
        return false;
    }
    std::uint8_t labelDigest[kLongestDigest];
    ComputeDigest(hash, label, labelDigest);

    // First in the clear: a zero byte, the seed, and the data block, which is digest,
    // zeros, a byte of 1 and the message. Then the seed masks the data block, and the
    // masked data block masks the seed.
    const std::uint32_t zeros = encodedLength - messageLength - 2 * digestSize - 2;
    const bool assembled = output->EnsureCapacity(encodedLength) && output->AppendByte(0) &&
                           SharedR250().AppendBytes(digestSize, output) && output->Append(labelDigest, digestSize) &&
                           output->AppendFill(0, zeros) && output->AppendByte(1) &&
                           output->Append(message.data(), messageLength);
    if (!assembled || output->length() != encodedLength) {
        log.logError("OAEP encoding output size error");
        log.logSize("OutputSize", output->length());
        log.logSize("ExpectedSize", encodedLength);
        output->Clear();
        return false;
    }
    const std::span<std::uint8_t> seed(output->data() + 1, digestSize);
    const std::span<std::uint8_t> block(output->data() + 1 + digestSize, encodedLength - digestSize - 1);
    const bool masked = ApplyMask(MgfSite::kDataBlockMask, hash, seed, block, log) &&
                        ApplyMask(MgfSite::kSeedMask, hash, block, seed, log);
    if (!masked) {
        output->Clear();
    }
    return masked;
}

} // namespace pavonix
