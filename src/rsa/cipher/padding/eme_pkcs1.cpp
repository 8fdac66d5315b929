#include "rsa/cipher/padding/eme_pkcs1.h"

#include "rsa/random/r250.h"

namespace pavonix {

namespace {

bool AppendFiller(std::uint8_t blockType, std::uint32_t count, DataBuffer *output)
{
    return blockType == kEncryptionBlock ? SharedR250().AppendNonZeroBytes(count, output)
                                         : output->AppendFill(0xFF, count);
}

} // namespace

bool EncodePkcs1(ByteSpan message, std::uint8_t blockType, std::int32_t modulusBitLength, DataBuffer *output,
                 LogBase &log)
{
    output->Clear();
    const auto messageLength = static_cast<std::uint32_t>(message.size());
    const std::uint32_t encodedLength = (static_cast<std::uint32_t>(modulusBitLength) + 7) / 8;
    if (encodedLength < kPkcs1Overhead || messageLength > encodedLength - kPkcs1Overhead) {
        log.logError("PKCS v1.5 message length too large");
        log.logSize("MessageLen", messageLength);
        log.logSize("ModulusLen", encodedLength);
        return false;
    }
    return output->EnsureCapacity(encodedLength) && output->AppendByte(0) && output->AppendByte(blockType) &&
           AppendFiller(blockType, encodedLength - messageLength - 3, output) && output->AppendByte(0) &&
           output->Append(message.data(), messageLength);
}

} // namespace pavonix
