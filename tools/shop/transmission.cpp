#include "transmission.h"

#include <boost/beast/http/write.hpp>

#include <sstream>

namespace shop {

ReplyText TextOf(const Response &response)
{
    std::ostringstream head;
    head << response.base();
    return {head.str(), response.body()};
}

Transmission AsOnePiece(const Response &response)
{
    const ReplyText reply = TextOf(response);
    return {.pieces = {{reply.head + reply.body}}};
}

} // namespace shop
