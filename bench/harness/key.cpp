#include "harness/key.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <openssl/evp.h>

namespace pavonix::bench {

std::string KeyXml(int bits)
{
    std::ifstream file(BENCH_DATA_DIR "/rsa_" + std::to_string(bits) + ".xml");
    std::string xml;
    if (!std::getline(file, xml)) {
        std::abort();
    }
    return xml;
}

std::string KeyPart(const std::string &xml, const std::string &element)
{
    const std::size_t begin = xml.find("<" + element + ">") + element.size() + 2;
    const std::string text = xml.substr(begin, xml.find("</" + element + ">") - begin);
    std::string bytes(text.size(), 0);
    const int length =
        EVP_DecodeBlock(reinterpret_cast<unsigned char *>(bytes.data()),
                        reinterpret_cast<const unsigned char *>(text.data()), static_cast<int>(text.size()));
    const auto padding = std::count(text.begin(), text.end(), '=');
    bytes.resize(static_cast<std::size_t>(length - padding));
    return bytes;
}

} // namespace pavonix::bench
