#include "token/token.h"

#include <algorithm>

namespace token {

namespace {

// Removes the mask that MGF1 (RFC 8017, B.2.1) derives from the seed.
Bytes Unmask(ByteSpan bytes, ByteSpan seed)
{
    Bytes unmasked(bytes.begin(), bytes.end());
    Bytes input(seed.begin(), seed.end());
    input.resize(seed.size() + 4);
    Sha1Digest digest{};
    for (std::size_t i = 0; i < unmasked.size(); ++i) {
        if (i % digest.size() == 0) {
            const auto counter = static_cast<unsigned>(i / digest.size());
            input[seed.size() + 2] = static_cast<unsigned char>(counter >> 8);
            input[seed.size() + 3] = static_cast<unsigned char>(counter);
            digest = Sha1(input);
        }
        unmasked[i] ^= digest[i % digest.size()];
    }
    return unmasked;
}

// RFC 8017, 7.1.2, step 3. The text is not secret, so timing does not matter.
std::optional<std::string> DecodeOaep(ByteSpan encoded)
{
    constexpr std::size_t kDigest = std::tuple_size_v<Sha1Digest>;
    if (encoded.size() < 2 * kDigest + 2 || encoded[0] != 0) {
        return std::nullopt;
    }
    const ByteSpan masked = encoded.subspan(1 + kDigest);
    const Bytes seed = Unmask(encoded.subspan(1, kDigest), masked);
    const Bytes data = Unmask(masked, seed);
    const Sha1Digest emptyLabel = Sha1({});
    const auto text = std::find_if(data.begin() + kDigest, data.end(), [](unsigned char byte) { return byte != 0; });
    if (!std::equal(emptyLabel.begin(), emptyLabel.end(), data.begin()) || text == data.end() || *text != 1) {
        return std::nullopt;
    }
    return std::string(text + 1, data.end());
}

// Opens the blocks, up to the first one that does not open.
std::vector<OpenedBlock> OpenBlocks(const Bytes &ciphertext, std::size_t blockSize, const PublicKey &key)
{
    std::vector<OpenedBlock> blocks;
    for (std::size_t at = 0; at < ciphertext.size(); at += blockSize) {
        const auto received = std::span(ciphertext).subspan(at, blockSize);
        OpenedBlock block{{received.begin(), received.end()}, RaiseToExponent(received, key), std::nullopt};
        block.text = block.encoded.empty() ? std::nullopt : DecodeOaep(block.encoded);
        blocks.push_back(std::move(block));
        if (!blocks.back().text) {
            break;
        }
    }
    return blocks;
}

} // namespace

Opening OpenStepByStep(const std::string &headerValue, const PublicKey &key)
{
    Opening opening{DecodeBase64(headerValue), {}, {}, {}};
    const auto blockSize = (static_cast<std::size_t>(ModulusBits(key)) + 7) / 8;
    if (!opening.ciphertext || opening.ciphertext->size() % blockSize != 0) {
        return opening;
    }
    opening.blocks = OpenBlocks(*opening.ciphertext, blockSize, key);
    std::string text;
    for (const OpenedBlock &block : opening.blocks) {
        if (!block.text) {
            return opening;
        }
        text += *block.text;
    }
    opening.time = ParseTimeText(text);
    opening.text = std::move(text);
    return opening;
}

std::optional<Token> OpenToken(const std::string &headerValue, const PublicKey &key)
{
    const Opening opening = OpenStepByStep(headerValue, key);
    if (!opening.ciphertext || !opening.time) {
        return std::nullopt;
    }
    Token token{{}, *opening.time};
    for (const OpenedBlock &block : opening.blocks) {
        token.blocks.push_back(block.received);
    }
    return token;
}

} // namespace token
