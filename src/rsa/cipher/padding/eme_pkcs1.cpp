#include "rsa/cipher/padding/eme_pkcs1.h"

#include "rsa/log/log_size.h"
#include "rsa/random/random_bytes.h"

namespace pavonix {

namespace {

bool AppendFiller(std::uint8_t blockType, std::uint32_t count, DataBuffer *output)
{
    return blockType == kEncryptionBlock ? RandomNonZeroBytes(count, output) : output->AppendFill(0xFF, count);
}

} // namespace

bool EncodePkcs1(const std::uint8_t *message, std::uint32_t messageLength, std::uint8_t blockType,
                 std::int32_t modulusBitLength, DataBuffer *output, LogBase &log)
{
    output->Clear();
    const std::uint32_t encodedLength = (static_cast<std::uint32_t>(modulusBitLength) + 7) / 8;
    if (encodedLength < kPkcs1Overhead || messageLength > encodedLength - kPkcs1Overhead) {
        log.logError("PKCS v1.5 message length too large");
        LogSize(log, "MessageLen", messageLength);
        LogSize(log, "ModulusLen", encodedLength);
        return false;
    }
    return output->EnsureCapacity(encodedLength) && output->AppendByte(0) && output->AppendByte(blockType) &&
           AppendFiller(blockType, encodedLength - messageLength - 3, output) && output->AppendByte(0) &&
           output->Append(message, messageLength);
}

} // namespace pavonix
