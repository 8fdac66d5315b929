// Valid and damaged key texts. A valid key must sign, however it is written, and the
// signature must decrypt (c^e mod N) to the text. Others must not crash.
#include "demand.h"
#include "model/choices.h"
#include "rsa/cipher/zt_rsa.h"
#include "support/rsa_keys.h"
#include "support/tap.h"

#include <openssl/bn.h>

using namespace pavonix;

namespace {

// Writes one part as an element; clears `sound` if it changes the part's value.
std::string Part(e2e::Choices *choices, const std::string &tag, std::string bytes, bool *sound)
{
    const std::size_t way = choices->Below(16);
    bytes = way == 1 ? std::string(choices->Below(40), '\0') + bytes : bytes;
    std::string base64 = test::ToBase64(bytes);
    *sound = *sound && way < 3;
    if (way == 2) {
        base64.insert(choices->Below(base64.size()), choices->Text({" ", "\r\n", "\t", "<!-- -->", "&#32;"}));
    } else if (way == 3) {
        return "";
    } else if (way == 4) {
        base64 = choices->Raw(60);
    } else if (way == 5) {
        base64[choices->Below(base64.size())] = choices->Pick({'A', '/', '=', '-', '<', '&', '\0'});
    } else if (way == 6) {
        base64.resize(choices->Below(base64.size()));
    }
    const std::string attribute = choices->Text({"", "", " ", " a='>'"});
    return "<" + tag + attribute + ">" + base64 + "</" + tag + (way == 7 ? " >" : ">");
}

// Decodes PKCS #1 v1.5 with OpenSSL's big integers.
std::string Opened(const test::OpenSslKey &key, const std::string &token)
{
    std::string text;
    for (std::size_t at = 0; at < token.size(); at += key.size()) {
        const std::string block = key.Raw(false, token.substr(at, key.size()));
        const std::size_t end = block.find('\0', 2);
        Demand(block[0] == 0 && (block[1] == 2 || block[1] == 1) && end != std::string::npos && end >= 10, "a block");
        text += block.substr(end + 1);
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    e2e::Choices choices(Bytes(data, size));
    tap::Reset();
    ZtRsa rsa;
    if (choices.Below(8) == 1) {
        rsa.ImportPrivateKey(choices.Raw(2000).c_str());
        ZtString survived;
        rsa.EncryptStringENC("x", true, &survived);
        return 0;
    }
    const test::TestKey &key = test::TestKeys()[choices.Below(test::TestKeys().size())];
    const bool oaep = choices.Below(2) == 1;
    const std::string text = "2010-3-5 9:7:3.042";
    bool sound = true;
    std::string xml = choices.Text({"", "<?xml version=\"1.0\"?>", "<!-- k -->", "\n"}) + "<K>";
    for (const auto &[tag, bytes] : key.Parts()) {
        xml += Part(&choices, tag, bytes, &sound) + choices.Text({"", "\n", "<x/>", "text"});
    }
    rsa.put_OAEP(oaep);
    ZtString token;
    const bool imported = rsa.ImportPrivateKey((xml + "</K>").c_str());
    const bool made = rsa.EncryptStringENC(text.c_str(), true, &token);
    Demand(made || token.length() == 0, "a token of a failed encryption");
    // a short result is zero-extended only if the modulus has a whole number of bytes
    if (!sound || key.size() < (oaep ? 43 : 12) || (key.bits % 8 != 0 && !made)) {
        return 0;
    }
    ZtString error;
    rsa.get_LastErrorText(&error);
    Demand(imported && made, "a sound key of " + std::to_string(key.bits) + " bits does not sign: " + error.c_str());
    const std::string bytes = test::FromBase64(token.c_str());
    Demand((oaep ? key.Decode(true, RSA_PKCS1_OAEP_PADDING, bytes) : Opened(key, bytes)) == text, "the token's text");
    return 0;
}
