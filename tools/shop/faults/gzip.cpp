#include "shop/faults/gzip.h"

#include <zlib.h>

#include <stdexcept>

namespace shop {

std::string Gzip(const std::string &bytes)
{
    constexpr int kGzipWindow = 15 + 16; // 16 more asks zlib for gzip's header
    z_stream stream{};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipWindow, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error("compressing failed");
    }
    std::string packed(deflateBound(&stream, bytes.size()), '\0');
    stream.next_in = reinterpret_cast<unsigned char *>(const_cast<char *>(bytes.data()));
    stream.avail_in = static_cast<unsigned>(bytes.size());
    stream.next_out = reinterpret_cast<unsigned char *>(packed.data());
    stream.avail_out = static_cast<unsigned>(packed.size());
    (void)deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

} // namespace shop
