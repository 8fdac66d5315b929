// Runs the codecs for the oracle test. Each input line is an operation and bytes
// in hex; the answer is one line, the result's bytes in hex.
//   <mode name> <hex>  encodes in that mode
//   decode <hex>       decodes base64 text into a byte buffer
//   decode-z <hex>     decodes zero-terminated base64 text into a string
#include "rsa/encoding/cls_encode.h"
#include "rsa/encoding/content_coding.h"
#include "support/texts.h"

#include <cstdlib>
#include <iostream>
#include <string>

using namespace pavonix;
using namespace pavonix::test;

namespace {

std::string Decode(const std::string &text)
{
    DataBuffer bytes;
    if (!ContentCoding::DecodeBase64(text.data(), static_cast<std::uint32_t>(text.size()), &bytes)) {
        std::abort();
    }
    return ToHex(BytesOf(bytes));
}

std::string DecodeZeroTerminated(const std::string &text)
{
    StringBuffer bytes;
    ContentCoding::DecodeBase64(text.c_str(), &bytes);
    return ToHex(BytesOf(bytes));
}

std::string Encode(const std::string &mode, const std::string &input)
{
    DataBuffer bytes;
    XString name;
    XString output;
    ClsEncode encode;
    name.SetFromAnsi(mode.c_str());
    encode.SetMode(name);
    if (!bytes.Append(input.data(), static_cast<std::uint32_t>(input.size()))) {
        std::abort();
    }
    encode.Encode(bytes, &output, false);
    return ToHex(BytesOf(output.GetUtf8()));
}

} // namespace

int main()
{
    std::string line;
    while (std::getline(std::cin, line)) {
        const std::size_t blank = line.find(' ');
        const std::string operation = line.substr(0, blank);
        const std::string input = FromHex(line.substr(blank + 1));
        std::cout << (operation == "decode"     ? Decode(input)
                      : operation == "decode-z" ? DecodeZeroTerminated(input)
                                                : Encode(operation, input))
                  << '\n';
    }
    return 0;
}
