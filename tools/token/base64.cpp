#include "token/base64.h"

#include <boost/archive/iterators/binary_from_base64.hpp>
#include <boost/archive/iterators/transform_width.hpp>

namespace token {

std::optional<Bytes> DecodeBase64(const std::string &text)
{
    using Decoder = boost::archive::iterators::transform_width<
        boost::archive::iterators::binary_from_base64<std::string::const_iterator>, 8, 6>;
    const std::size_t digits = text.find_last_not_of('=') + 1;
    if (digits == 0 || text.size() % 4 != 0 || text.size() - digits > 2) {
        return std::nullopt;
    }
    try {
        const std::string filled = text.substr(0, digits) + std::string(text.size() - digits, 'A');
        Bytes bytes(Decoder(filled.begin()), Decoder(filled.end()));
        bytes.resize(text.size() / 4 * 3 - (text.size() - digits));
        return bytes;
    } catch (const boost::archive::iterators::dataflow_exception &) {
        return std::nullopt; // not a digit of base64
    }
}

} // namespace token
