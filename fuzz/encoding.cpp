// The codecs: base64 compared with OpenSSL, its lenient decoder with a model, the others
// decoded by independent code.
#include "demand.h"
#include "rsa/encoding/content_coding.h"
#include "support/openssl_key.h"
#include "support/texts.h"

#include <cstring>

using namespace pavonix;

namespace {

template <typename Encode>
std::string Encoded(Encode encode)
{
    StringBuffer text;
    encode(&text);
    return test::BytesOf(text);
}

// Decodes characters of an alphabet, `bits` bits each.
std::string FromBits(const std::string &text, const char *alphabet, int bits)
{
    std::string bytes;
    unsigned held = 0;
    int count = 0;
    for (const char c : text) {
        const char *place = c == 0 ? nullptr : std::strchr(alphabet, c);
        Demand(place != nullptr, std::string("a character outside the alphabet: ") + c);
        held = held << bits | static_cast<unsigned>(place - alphabet);
        count += bits;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(held >> count);
        }
    }
    return bytes;
}

std::string Unescaped(const std::string &text, char escape)
{
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != escape) {
            bytes += text[i];
        } else if (text.compare(i + 1, 2, "\r\n") == 0) {
            i += 2; // a soft line break
        } else {
            bytes += test::FromHex(text.substr(i + 1, 2));
            i += 2;
        }
    }
    return bytes;
}

void CheckBase32(const std::string &bytes, std::string text)
{
    Demand(text.size() == (bytes.size() + 4) / 5 * 8, "the length of base 32");
    text.resize(text.find_last_not_of('=') + 1);
    Demand(FromBits(text, "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567", 5) == bytes, "base 32");
}

void CheckQuotedPrintable(const std::string &bytes, const std::string &text)
{
    Demand(Unescaped(text, '=') == bytes, "quoted printable: " + text);
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find("\r\n", at), text.size());
        Demand(end - at <= 76 && (end == at || (text[end - 1] != ' ' && text[end - 1] != '\t')), "a line of " + text);
        at = end + 2;
    }
}

void CheckUuencode(const std::string &bytes, const std::string &text)
{
    const std::string start = "begin 644 f\n", end = "`\nend\n";
    Demand(text.starts_with(start) && text.ends_with(end), "the frame of uuencode");
    std::string alphabet = "`";
    for (char c = '!'; c < '`'; ++c) {
        alphabet += c;
    }
    std::string decoded;
    for (std::size_t at = start.size(); at < text.size() - end.size(); at = text.find('\n', at) + 1) {
        const std::size_t length = alphabet.find(text[at]), digits = (length + 2) / 3 * 4;
        Demand(text.find('\n', at) == at + 1 + digits, "the length of a line of uuencode");
        Demand(length == std::min<std::size_t>(45, bytes.size() - decoded.size()), "the bytes of a line of uuencode");
        decoded += FromBits(text.substr(at + 1, digits), alphabet.c_str(), 6).substr(0, length);
    }
    Demand(decoded == bytes, "uuencode");
}

// Model of the lenient decoder: 6-bit steps in a 24-bit word. A character between "+" and
// "z" outside the alphabet counts as seven set bits; all others are skipped.
std::string LooselyDecoded(const std::string &text)
{
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    std::uint32_t word = 0, steps = 0;
    for (const char c : text.substr(0, text.find_first_of(std::string("=\0", 2)))) {
        if (c >= '+' && c <= 'z') {
            const std::size_t value = alphabet.find(c);
            word |= static_cast<std::uint32_t>(value == alphabet.npos ? 127 : value) << (18 - 6 * (steps % 4));
            if (++steps % 4 == 0) {
                bytes += {static_cast<char>(word >> 16), static_cast<char>(word >> 8), static_cast<char>(word)};
                word = 0;
            }
        }
    }
    const std::string rest = {static_cast<char>(word >> 16), static_cast<char>(word >> 8)};
    return bytes + rest.substr(0, steps % 4 * 6 / 8);
}

void CheckDecoding(const std::string &text)
{
    DataBuffer decoded;
    Demand(ContentCoding::DecodeBase64(text.data(), static_cast<std::uint32_t>(text.size()), &decoded), "decoding");
    Demand(test::BytesOf(decoded) == LooselyDecoded(text), "decoding " + text);
    StringBuffer appended;
    ContentCoding::DecodeBase64(text.c_str(), &appended);
    Demand(test::BytesOf(appended) == LooselyDecoded(text.c_str()), "decoding to a text " + text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string bytes = Bytes(data, size);
    const auto count = static_cast<std::uint32_t>(size);
    const auto with = [&](auto encode) { return Encoded([&](StringBuffer *text) { encode(data, count, text); }); };
    const std::string base64 = with(ContentCoding::EncodeBase64);
    Demand(base64 == test::ToBase64(bytes), "base64: " + base64);
    CheckDecoding(base64);
    CheckDecoding(bytes);
    Demand(with(ContentCoding::EncodeHex) == test::ToHex(bytes), "hex");
    Demand(with(ContentCoding::EncodeAnsi) == bytes, "ansi");
    CheckBase32(bytes, with(ContentCoding::EncodeBase32));
    const std::string url = with(ContentCoding::EncodeUrl);
    Demand(Unescaped(url, '%') == bytes, "url: " + url);
    CheckUuencode(bytes,
                  Encoded([&](StringBuffer *text) { ContentCoding::EncodeUuencode(data, count, "644", "f", text); }));
    CheckQuotedPrintable(
        bytes, Encoded([&](StringBuffer *text) { ContentCoding().EncodeQuotedPrintable(data, count, text); }));
    return 0;
}
