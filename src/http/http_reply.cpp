// HttpConnection: reception of the reply's start.
#include "http/find_text.h"
#include "http/http_connection.h"
#include "http/reply_text.h"
#include "rsa/text/decimal.h"

#include <cstring>
#include <memory>

namespace pavonix {

const char *HttpConnection::ReceiveHead()
{
    if (headReceived_ != 0) {
        return headArea_;
    }
    char area[kFirstReception + 1] = {};
    // The byte count is not kept: missing bytes count as zeros from here on.
    platform::ReceiveSocket(socket_, area, kFirstReception);
    const std::int32_t blankLine = FindText(area, "\r\n\r\n", 0);
    headLength_ = blankLine < 0 ? kHeadLengthWithoutEnd : static_cast<std::uint32_t>(blankLine) + 4;
    head_.AppendN(area, static_cast<std::int32_t>(headLength_));

    const std::unique_ptr<char[]> length(GetHeaderValue(head_.c_str(), "Content-Length"));
    contentLength_ = length == nullptr ? 0 : static_cast<std::uint32_t>(ParseDecimal(length.get()));

    const std::uint32_t room = kFirstReception - headLength_;
    const std::uint32_t held = contentLength_ == 0 || contentLength_ > room ? room : contentLength_;
    std::memcpy(bodyPrefix_, area + headLength_, held);
    std::memcpy(headArea_, area, headLength_ + held);
    return headArea_;
}

} // namespace pavonix
