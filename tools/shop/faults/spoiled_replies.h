// Wrong ways to send a reply: each takes the shop's correct reply.
#pragma once

#include "shop/transmission.h"

namespace shop {

[[nodiscard]] Transmission HeadApart(const Response &response);
[[nodiscard]] Transmission HeadInPieces(const Response &response);
[[nodiscard]] Transmission Late(const Response &response);
[[nodiscard]] Transmission Slow(const Response &response);
[[nodiscard]] Transmission Short(const Response &response);
[[nodiscard]] Transmission Long(const Response &response);
[[nodiscard]] Transmission WithoutLength(Response response);
[[nodiscard]] Transmission Chunked(Response response);
[[nodiscard]] Transmission Compressed(Response response);
[[nodiscard]] Transmission LongHead(Response response);
[[nodiscard]] Transmission LowerCase(const Response &response);
[[nodiscard]] Transmission HiddenHeaders(const Response &response);
[[nodiscard]] Transmission BareLineFeeds(const Response &response);
[[nodiscard]] Transmission HeadWithoutEnd(const Response &response);
[[nodiscard]] Transmission InterimFirst(const Response &response);
[[nodiscard]] Transmission ResetInBody(const Response &response);
[[nodiscard]] Transmission SoldWithCode(Response response);

} // namespace shop
